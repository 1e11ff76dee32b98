#pragma once
// Readable failure output for Qt text types in GoogleTest expectations.
#include <QByteArray>
#include <QString>
#include <ostream>

inline void PrintTo(const QString& s, std::ostream* os) { *os << '"' << s.toStdString() << '"'; }
// Long byte strings show their size and their last bytes, where tags end.
inline void PrintTo(const QByteArray& b, std::ostream* os)
{
    *os << b.size() << " bytes";
    if (b.size() > 160)
        *os << ", ending in";
    *os << ": " << b.right(160).toHex(' ').toStdString();
}
