#include "track_journal.h"

#include <QFile>
#include <cstring>
#include <map>

#include "shell/bounded_read.h"
#include "shell/durable_file.h"

namespace sonorit {

namespace {

constexpr int kHeaderSize = 14;
constexpr int kTagSize = 10;
// As many records as a Trackfile can hold, each possibly written many times.
constexpr qint64 kMaxJournalBytes = 1LL << 31;

quint32 lengthAt(const QByteArray& bytes, qint64 pos)
{
    const auto* b = reinterpret_cast<const unsigned char*>(bytes.constData() + pos + kTagSize);
    return (quint32(b[0]) << 24) | (quint32(b[1]) << 16) | (quint32(b[2]) << 8) | quint32(b[3]);
}

}  // namespace

QString Track_Journal_Path(const QString& trackfile) { return trackfile + QStringLiteral(".journal"); }

QByteArray Apply_Track_Journal(const QByteArray& trackfile, const QByteArray& journal)
{
    // The last complete record of each slot, by its tag.
    std::map<QByteArray, std::pair<qint64, qint64>> latest;
    for (qint64 pos = 0; pos + kHeaderSize <= journal.size();) {
        const qint64 end = pos + kHeaderSize + lengthAt(journal, pos);
        if (end > journal.size() || std::memcmp(journal.constData() + pos, "TRCK", 4) != 0
            || journal.at(end - 1) != '\0')
            break;  // a record cut off by a kill, and nothing after it
        latest[journal.mid(pos, kTagSize)] = {pos, end};
        pos = end;
    }
    if (latest.empty())
        return trackfile;

    QByteArray out;
    out.reserve(trackfile.size() + journal.size());
    qint64 pos = 0;
    while (pos + kHeaderSize <= trackfile.size()) {
        const qint64 end = pos + kHeaderSize + lengthAt(trackfile, pos);
        if (end > trackfile.size())
            break;
        const auto found = latest.find(QByteArray::fromRawData(trackfile.constData() + pos, kTagSize));
        if (found == latest.end())
            out.append(trackfile.constData() + pos, end - pos);
        else
            out.append(journal.constData() + found->second.first, found->second.second - found->second.first);
        pos = end;
    }
    out.append(trackfile.constData() + pos, trackfile.size() - pos);  // a tail that is no whole record stays
    return out;
}

bool Read_Track_Journal(const QString& trackfile, QByteArray* journal)
{
    return Read_Regular_File(Track_Journal_Path(trackfile), kMaxJournalBytes, journal) == ReadResult::Read;
}

bool Settle_Track_Journal(const QString& trackfile)
{
    QByteArray journal, records;
    if (!Read_Track_Journal(trackfile, &journal))
        return true;
    if (Read_Regular_File(trackfile, kMaxJournalBytes, &records) != ReadResult::Read
        || !Write_File_Durably(trackfile, Apply_Track_Journal(records, journal)))
        return false;
    // A kill before this removal leaves a journal that applies again to the
    // same result.
    QFile::remove(Track_Journal_Path(trackfile));
    return true;
}

}  // namespace sonorit
