#include "codepage.h"

#include <array>

namespace sonorit {

namespace {
// 0x80..0x9F of Windows-1252; 0 marks the five unassigned bytes, which map to
// the C1 control of the same value as Windows itself does.
constexpr std::array<char16_t, 32> kHigh = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0,      0x017D, 0,
    0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

char16_t decodeByte(unsigned char b)
{
    if (b >= 0x80 && b < 0xA0 && kHigh[b - 0x80] != 0)
        return kHigh[b - 0x80];
    return b;
}

bool isValidUtf8(const unsigned char* s, qsizetype n)
{
    qsizetype i = 0;
    while (i < n) {
        const unsigned char c = s[i];
        if (c < 0x80) { ++i; continue; }
        int extra;
        unsigned int cp;
        if ((c & 0xE0) == 0xC0) { extra = 1; cp = c & 0x1F; }
        else if ((c & 0xF0) == 0xE0) { extra = 2; cp = c & 0x0F; }
        else if ((c & 0xF8) == 0xF0) { extra = 3; cp = c & 0x07; }
        else return false;
        if (i + extra >= n)
            return false;
        for (int k = 1; k <= extra; ++k) {
            if ((s[i + k] & 0xC0) != 0x80)
                return false;
            cp = (cp << 6) | (s[i + k] & 0x3F);
        }
        if ((extra == 1 && cp < 0x80) || (extra == 2 && cp < 0x800) || (extra == 3 && cp < 0x10000)
            || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF))
            return false;
        i += extra + 1;
    }
    return true;
}
}  // namespace

QString fromCp1252(const char* data, qsizetype size)
{
    QString out(size, Qt::Uninitialized);
    QChar* d = out.data();
    for (qsizetype i = 0; i < size; ++i)
        d[i] = QChar(decodeByte(static_cast<unsigned char>(data[i])));
    return out;
}

QByteArray toCp1252(const QString& text)
{
    QByteArray out(text.size(), Qt::Uninitialized);
    char* d = out.data();
    qsizetype n = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t u = text[i].unicode();
        if (QChar::isHighSurrogate(u) && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            ++i;  // one character outside the page: one "?"
            d[n++] = '?';
            continue;
        }
        if (u < 0x80 || (u >= 0xA0 && u < 0x100) || (u >= 0x80 && u < 0xA0 && kHigh[u - 0x80] == 0)) {
            d[n++] = static_cast<char>(u);
            continue;
        }
        char mapped = '?';
        for (int k = 0; k < 32; ++k) {
            if (kHigh[k] == u) {
                mapped = static_cast<char>(0x80 + k);
                break;
            }
        }
        d[n++] = mapped;
    }
    out.truncate(n);
    return out;
}

QString decodeFileText(const char* data, qsizetype size)
{
    const auto* s = reinterpret_cast<const unsigned char*>(data);
    bool ascii = true;
    for (qsizetype i = 0; i < size; ++i) {
        if (s[i] >= 0x80) { ascii = false; break; }
    }
    if (ascii)
        return QString::fromLatin1(data, size);
    if (isValidUtf8(s, size))
        return QString::fromUtf8(data, size);
    return fromCp1252(data, size);
}

}  // namespace sonorit
