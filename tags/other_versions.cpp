#include "other_versions.h"

#include <QStringDecoder>
#include <QStringEncoder>
#include <QStringList>
#include <algorithm>
#include <cstring>

#include "frame_names.h"
#include "shell/codepage.h"

namespace sonorit {

namespace {

constexpr qint64 kMaxTag = qint64(1) << 28;

quint32 synchsafe(const unsigned char* b)
{
    return (quint32(b[0] & 0x7F) << 21) | (quint32(b[1] & 0x7F) << 14) | (quint32(b[2] & 0x7F) << 7) | (b[3] & 0x7F);
}

quint32 bigEndian(const unsigned char* b, int n)
{
    quint32 v = 0;
    for (int i = 0; i < n; ++i)
        v = (v << 8) | b[i];
    return v;
}

const unsigned char* bytes(const QByteArray& a, qsizetype at) { return reinterpret_cast<const unsigned char*>(a.constData() + at); }

// A 0xFF followed by an inserted 0x00 becomes 0xFF again.
QByteArray undoUnsynchronisation(const QByteArray& in)
{
    QByteArray out;
    out.reserve(in.size());
    for (qsizetype i = 0; i < in.size(); ++i) {
        out += in[i];
        if (quint8(in[i]) == 0xFF && i + 1 < in.size() && in[i + 1] == '\0')
            ++i;
    }
    return out;
}

bool isFrameName(const QByteArray& id)
{
    return std::all_of(id.begin(), id.end(), [](char c) { return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9'); });
}

// --- Text of the foreign frames ---------------------------------------------

// The length of one terminated string of the encoding from `at`, terminator
// excluded, and the terminator's width.
qsizetype stringEnd(int encoding, const QByteArray& data, qsizetype at, int& width)
{
    width = (encoding == 1 || encoding == 2) ? 2 : 1;
    for (qsizetype i = at; i + width <= data.size(); i += width) {
        if (data[i] == '\0' && (width == 1 || data[i + 1] == '\0'))
            return i;
    }
    width = 0;
    return data.size();
}

QString decode(int encoding, const QByteArray& raw)
{
    using C = QStringConverter;
    switch (encoding) {
    case 0: return fromCp1252(raw);
    case 1: {
        // A byte order mark decides; without one, little-endian as most writers use.
        const bool big = raw.size() >= 2 && quint8(raw[0]) == 0xFE && quint8(raw[1]) == 0xFF;
        const bool mark = big || (raw.size() >= 2 && quint8(raw[0]) == 0xFF && quint8(raw[1]) == 0xFE);
        return QStringDecoder(big ? C::Utf16BE : C::Utf16LE)(mark ? raw.mid(2) : raw);
    }
    case 2: return QStringDecoder(C::Utf16BE)(raw);
    case 3: return QString::fromUtf8(raw);
    default: return {};
    }
}

// Reads one terminated string and moves `at` behind its terminator.
QString takeString(int encoding, const QByteArray& data, qsizetype& at)
{
    int width = 0;
    const qsizetype end = stringEnd(encoding, data, at, width);
    const QString s = decode(encoding, data.mid(at, end - at));
    at = end + width;
    return s;
}

// All strings up to the end of the data (v2.4 separates values by a terminator).
QStringList takeStrings(int encoding, const QByteArray& data, qsizetype at)
{
    QStringList out;
    while (at < data.size()) {
        const QString s = takeString(encoding, data, at);
        if (!s.isEmpty())
            out << s;
    }
    return out;
}

// --- Text for the v2.3 frames ------------------------------------------------

// Frames whose text becomes the program's fields: single-byte text as the
// program's own writer stores it, so that the next read sees all of it.
bool isOwnField(const QByteArray& id)
{
    static const char* const kOwn[] = {"TPE1", "TALB", "TRCK", "TYER", "TIT2", "TPE2", "TLEN", "TCON", "TFRM", "COMM"};
    return std::any_of(std::begin(kOwn), std::end(kOwn), [&](const char* n) { return id == n; });
}

bool isLatin1(const QString& s)
{
    return std::all_of(s.begin(), s.end(), [](QChar c) { return c.unicode() < 0x80 || (c.unicode() >= 0xA0 && c.unicode() <= 0xFF); });
}

// Encoding byte and encoder for the strings of one kept frame: Latin-1 when
// all of them fit, UTF-16 with a byte order mark otherwise.
struct Encoder {
    int encoding = 0;
    QByteArray operator()(const QString& s, bool terminated) const
    {
        if (encoding == 0)
            return s.toLatin1() + (terminated ? QByteArray(1, '\0') : QByteArray());
        QByteArray out("\xFF\xFE", 2);
        for (const QChar c : s)
            out.append(char(c.unicode() & 0xFF)).append(char(c.unicode() >> 8));
        return terminated ? out + QByteArray(2, '\0') : out;
    }
};

Encoder encoderFor(const QByteArray& id, const QStringList& strings)
{
    if (isOwnField(id))
        return Encoder{0};
    return Encoder{std::all_of(strings.begin(), strings.end(), isLatin1) ? 0 : 1};
}

QByteArray encodeOwn(const QString& s, bool terminated)
{
    return toCp1252(s) + (terminated ? QByteArray(1, '\0') : QByteArray());
}

QByteArray encodeWith(const Encoder& e, const QByteArray& id, const QString& s, bool terminated)
{
    return isOwnField(id) ? encodeOwn(s, terminated) : e(s, terminated);
}

// A genre of the later versions ("17", "RX", a name) in the form of TCON v2.3.
QString genreText(const QStringList& values)
{
    if (values.isEmpty())
        return {};
    const QString& g = values.first();
    bool number = false;
    const int n = g.toInt(&number);
    if (number && n >= 0 && n <= 255)
        return QStringLiteral("(%1)").arg(n);
    if (g == QLatin1String("RX") || g == QLatin1String("CR"))
        return QLatin1Char('(') + g + QLatin1Char(')');
    return g;
}

class Builder {
public:
    void add(const QByteArray& id, const QByteArray& data)
    {
        // Names the program's walk takes for the end of a tag would cut off
        // everything behind them.
        if (id.size() != 4 || Classify_Frame(id) == FrameClass::Stop)
            return;
        const quint32 n = quint32(data.size());
        const char head[] = {id[0], id[1], id[2], id[3], char(n >> 24), char(n >> 16), char(n >> 8), char(n), 0, 0};
        frames_.append(head, 10).append(data);
    }

    void addText(const QByteArray& id, const QStringList& values)
    {
        const QString text = id == "TCON" ? genreText(values) : values.join(QLatin1Char('/'));
        const Encoder e = encoderFor(id, {text});
        add(id, char(e.encoding) + encodeWith(e, id, text, false));
    }

    // A v2.4 time stamp "yyyy-MM-ddTHH:mm:ss" as the year, date and time of v2.3.
    void addTimestamp(const QByteArray& yearId, const QString& stamp, bool withDateAndTime)
    {
        if (stamp.size() >= 4)
            addText(yearId, {stamp.left(4)});
        if (!withDateAndTime)
            return;
        if (stamp.size() >= 10)
            addText("TDAT", {stamp.mid(8, 2) + stamp.mid(5, 2)});
        if (stamp.size() >= 16)
            addText("TIME", {stamp.mid(11, 2) + stamp.mid(14, 2)});
    }

    QByteArray tag() const
    {
        const quint32 n = quint32(frames_.size());
        const char h[] = {'I', 'D', '3', 3, 0, 0, char(n >> 21 & 0x7F), char(n >> 14 & 0x7F), char(n >> 7 & 0x7F),
                          char(n & 0x7F)};
        return QByteArray(h, 10) + frames_;
    }

private:
    QByteArray frames_;
};

// One frame's content in the v2.3 form. `id` is already the v2.3 name.
void translateFrame(Builder& out, const QByteArray& id, const QByteArray& data)
{
    if (data.isEmpty())
        return;
    const int enc = quint8(data[0]);
    if (id == "TXXX" || id == "WXXX") {
        qsizetype at = 1;
        const QString description = takeString(enc, data, at);
        if (id == "WXXX") {
            const Encoder e = encoderFor(id, {description});
            out.add(id, char(e.encoding) + e(description, true) + data.mid(at));
            return;
        }
        const QString value = takeStrings(enc, data, at).join(QLatin1Char('/'));
        const Encoder e = encoderFor(id, {description, value});
        out.add(id, char(e.encoding) + e(description, true) + e(value, false));
        return;
    }
    if (id == "TDRC" || id == "TDOR") {
        const QStringList values = takeStrings(enc, data, 1);
        if (!values.isEmpty())
            out.addTimestamp(id == "TDRC" ? "TYER" : "TORY", values.first(), id == "TDRC");
        return;
    }
    if (id.startsWith('T')) {
        out.addText(id == "TIPL" ? QByteArray("IPLS") : id, takeStrings(enc, data, 1));
        return;
    }
    if ((id == "COMM" || id == "USLT") && data.size() >= 4) {
        qsizetype at = 4;
        const QString description = takeString(enc, data, at);
        const QString text = decode(enc, data.mid(at));
        const Encoder e = encoderFor(id, {description, text});
        // The comment's text keeps no terminator, as the program writes it.
        QString body = text;
        while (body.endsWith(QChar(0)))
            body.chop(1);
        out.add(id, char(e.encoding) + data.mid(1, 3) + encodeWith(e, id, description, true)
                        + encodeWith(e, id, body, false));
        return;
    }
    out.add(id, data);
}

// APIC of v2.4 and PIC of v2.2, in the form of v2.3.
void translatePicture(Builder& out, const QByteArray& data, bool threeLetterFormat)
{
    if (data.size() < 2)
        return;
    const int enc = quint8(data[0]);
    qsizetype at = 1;
    QByteArray mime;
    if (threeLetterFormat) {
        const QByteArray format = data.mid(1, 3).toUpper();
        mime = format == "JPG" ? QByteArray("image/jpeg") : "image/" + format.toLower();
        at = 4;
    } else {
        int width = 0;
        const qsizetype end = stringEnd(0, data, at, width);
        mime = data.mid(at, end - at);
        at = end + width;
    }
    if (at >= data.size())
        return;
    const char type = data[at++];
    const QString description = takeString(enc, data, at);
    const Encoder e = encoderFor("APIC", {description});
    out.add("APIC", char(e.encoding) + mime + '\0' + type + e(description, true) + data.mid(at));
}

void translate(Builder& out, const QByteArray& id, const QByteArray& data)
{
    if (id == "APIC")
        translatePicture(out, data, false);
    else
        translateFrame(out, id, data);
}

// --- Version 2.4 ---------------------------------------------------------------

// Sizes in a v2.4 tag are synchsafe; some writers stored plain ones all the
// same. The plain reading is taken where the synchsafe one cannot be right.
qint64 frameSize24(const QByteArray& body, qsizetype at)
{
    const unsigned char* s = bytes(body, at + 4);
    const qint64 safe = synchsafe(s), plain = bigEndian(s, 4);
    if ((s[0] | s[1] | s[2] | s[3]) & 0x80)
        return plain;
    const auto fits = [&](qint64 size) {
        const qint64 next = at + 10 + size;
        return next == body.size() || (next + 4 <= body.size() && (body[next] == '\0' || isFrameName(body.mid(next, 4))));
    };
    return !fits(safe) && fits(plain) ? plain : safe;
}

void readFrames24(Builder& out, const QByteArray& body, qsizetype at, bool tagUnsynchronised)
{
    while (at + 10 <= body.size()) {
        const QByteArray id = body.mid(at, 4);
        if (id[0] == '\0' || !isFrameName(id))
            return;  // padding, or not a frame
        const qint64 size = frameSize24(body, at);
        const int format = quint8(body[at + 9]);
        if (at + 10 + size > body.size())
            return;
        QByteArray data = body.mid(at + 10, size);
        at += 10 + size;
        if (format & 0x04)
            continue;  // encrypted: nothing to read
        if (format & 0x40)
            data.remove(0, 1);  // group byte
        quint32 fullLength = 0;
        if (format & 0x01) {  // data length indicator
            if (data.size() < 4)
                continue;
            fullLength = synchsafe(bytes(data, 0));
            data.remove(0, 4);
        }
        if ((format & 0x02) || tagUnsynchronised)
            data = undoUnsynchronisation(data);
        if (format & 0x08) {
            const char length[] = {char(fullLength >> 24), char(fullLength >> 16), char(fullLength >> 8), char(fullLength)};
            data = qUncompress(QByteArray(length, 4) + data);
            if (data.isEmpty())
                continue;
        }
        translate(out, id, data);
    }
}

// --- Version 2.2 ---------------------------------------------------------------

QByteArray name23(const QByteArray& id22)
{
    static const char* const kNames[][2] = {
        {"BUF", "RBUF"}, {"CNT", "PCNT"}, {"COM", "COMM"}, {"CRA", "AENC"}, {"EQU", "EQUA"}, {"ETC", "ETCO"},
        {"GEO", "GEOB"}, {"IPL", "IPLS"}, {"LNK", "LINK"}, {"MCI", "MCDI"}, {"MLL", "MLLT"}, {"PIC", "APIC"},
        {"POP", "POPM"}, {"REV", "RVRB"}, {"RVA", "RVAD"}, {"SLT", "SYLT"}, {"STC", "SYTC"}, {"TAL", "TALB"},
        {"TBP", "TBPM"}, {"TCM", "TCOM"}, {"TCO", "TCON"}, {"TCR", "TCOP"}, {"TDA", "TDAT"}, {"TDY", "TDLY"},
        {"TEN", "TENC"}, {"TFT", "TFLT"}, {"TIM", "TIME"}, {"TKE", "TKEY"}, {"TLA", "TLAN"}, {"TLE", "TLEN"},
        {"TMT", "TMED"}, {"TOA", "TOPE"}, {"TOF", "TOFN"}, {"TOL", "TOLY"}, {"TOR", "TORY"}, {"TOT", "TOAL"},
        {"TP1", "TPE1"}, {"TP2", "TPE2"}, {"TP3", "TPE3"}, {"TP4", "TPE4"}, {"TPA", "TPOS"}, {"TPB", "TPUB"},
        {"TRC", "TSRC"}, {"TRD", "TRDA"}, {"TRK", "TRCK"}, {"TSI", "TSIZ"}, {"TSS", "TSSE"}, {"TT1", "TIT1"},
        {"TT2", "TIT2"}, {"TT3", "TIT3"}, {"TXT", "TEXT"}, {"TXX", "TXXX"}, {"TYE", "TYER"}, {"UFI", "UFID"},
        {"ULT", "USLT"}, {"WAF", "WOAF"}, {"WAR", "WOAR"}, {"WAS", "WOAS"}, {"WCM", "WCOM"}, {"WCP", "WCOP"},
        {"WPB", "WPUB"}, {"WXX", "WXXX"}};
    for (const auto& [from, to] : kNames) {
        if (id22 == from)
            return to;
    }
    return {};
}

void readFrames22(Builder& out, const QByteArray& body)
{
    for (qsizetype at = 0; at + 6 <= body.size();) {
        const QByteArray id = body.mid(at, 3);
        if (id[0] == '\0' || !isFrameName(id))
            return;
        const qint64 size = bigEndian(bytes(body, at + 3), 3);
        if (at + 6 + size > body.size())
            return;
        const QByteArray data = body.mid(at + 6, size);
        at += 6 + size;
        if (id == "PIC")
            translatePicture(out, data, true);
        else if (const QByteArray to = name23(id); !to.isEmpty())
            translateFrame(out, to, data);
    }
}

}  // namespace

std::optional<TranslatedTag> Translate_Other_Tag(ByteSource& src)
{
    unsigned char h[10];
    if (!src.readExact(0, reinterpret_cast<char*>(h), 10) || std::memcmp(h, "ID3", 3) != 0 || (h[3] != 2 && h[3] != 4))
        return std::nullopt;
    const int version = h[3], flags = h[5];
    const qint64 size = synchsafe(h + 6);
    if (version == 2 && (flags & 0x40))
        return std::nullopt;  // compressed as a whole: no known way to read it
    QByteArray body = src.bytesAt(10, std::min(size, kMaxTag));
    Builder out;
    if (version == 4) {
        qsizetype first = 0;
        if ((flags & 0x40) && body.size() >= 4)
            first = synchsafe(bytes(body, 0));  // the extended header counts itself
        readFrames24(out, body, first, flags & 0x80);
    } else {
        if (flags & 0x80)
            body = undoUnsynchronisation(body);
        readFrames22(out, body);
    }
    const qint64 footer = (version == 4 && (flags & 0x10)) ? 10 : 0;
    return TranslatedTag{out.tag(), 10 + size + footer + 1};
}

SplicedSource::SplicedSource(QByteArray head, ByteSource& rest, qint64 restOffset)
    : head_(std::move(head)), rest_(rest), restOffset_(std::min(restOffset, rest.size()))
{
}

qint64 SplicedSource::readAt(qint64 offset, char* dst, qint64 n)
{
    if (offset < 0 || n <= 0 || offset >= size())
        return 0;
    qint64 done = 0;
    if (offset < head_.size()) {
        done = std::min(n, head_.size() - offset);
        std::memcpy(dst, head_.constData() + offset, size_t(done));
    }
    if (done < n)
        done += rest_.readAt(restOffset_ + offset + done - head_.size(), dst + done, n - done);
    return done;
}

TagView::TagView(ByteSource& src, bool readOtherVersions) : src_(src)
{
    if (!readOtherVersions)
        return;
    if (auto t = Translate_Other_Tag(src))
        spliced_.emplace(std::move(t->tag), src, t->audioStart - 1);
}

}  // namespace sonorit
