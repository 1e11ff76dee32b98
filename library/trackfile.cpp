#include "trackfile.h"

#include <QFile>
#include <algorithm>
#include <cstring>
#include <map>
#include <vector>

#include "shell/app_state.h"
#include "shell/bounded_read.h"
#include "shell/durable_file.h"
#include "shell/ui_port.h"
#include "library/track_journal.h"

#include <fcntl.h>
#include <unistd.h>

namespace sonorit {

namespace {

constexpr int kHeaderSize = 14;
constexpr int kMaxTextBytes = 32766;  // the length field is held in 16 signed bits
constexpr int kAttempts = 5;
// 32767 slots of the longest record.
constexpr qint64 kMaxTrackfileBytes = 32767LL * (14 + 32767);

enum class Splice { Replace, Blank, Truncate };

quint32 lengthOf(const char* header)
{
    const auto* b = reinterpret_cast<const unsigned char*>(header);
    return (quint32(b[10]) << 24) | (quint32(b[11]) << 16) | (quint32(b[12]) << 8) | quint32(b[13]);
}

QByteArray header(const QByteArray& tag, quint32 length)
{
    QByteArray h = tag;
    h.append(char(length >> 24)).append(char(length >> 16)).append(char(length >> 8)).append(char(length));
    return h;
}

enum class Outcome { Done, Failed, NoSlot };

struct Change {
    Splice kind = Splice::Replace;
    QByteArray text;
};

// The Trackfile as it stands: kept in memory while a command changes one
// record after another, read afresh otherwise.
bool currentTrackfile(LibraryContext& c, QByteArray* file)
{
    LibraryState::RecordSession& s = c.lib.records;
    if (s.active && s.loaded) {
        *file = s.image;
        return true;
    }
    if (c.lib.failAt("read") || Read_Regular_File(c.app.Trackfile, kMaxTrackfileBytes, file) != ReadResult::Read)
        return false;
    if (s.active) {
        s.image = *file;
        s.loaded = true;
    }
    return true;
}

// A record of unchanged length is written over itself; a kill cannot cut a
// write of a few hundred bytes, and nothing else in the file moves.
bool writeInPlace(LibraryContext& c, qint64 at, const QByteArray& record)
{
    QFile f(c.app.Trackfile);
    if (!f.open(QIODevice::ReadWrite | QIODevice::ExistingOnly) || c.lib.failAt("write-record") || !f.seek(at)
        || f.write(record) != record.size() || !f.flush())
        return false;
    return Sync_Written_Or_Defer(f.handle(), c.app.Trackfile);
}

bool writeAll(int fd, const char* data, qint64 size)
{
    while (size > 0) {
        const ssize_t n = ::write(fd, data, size_t(size));
        if (n <= 0)
            return false;
        data += n;
        size -= n;
    }
    return true;
}

// One record added to the session's journal through the descriptor the
// session keeps open; a failed append is cut off again, so the journal never
// ends in half a record this program still counts on.
bool appendToJournal(LibraryContext& c, const QByteArray& record)
{
    LibraryState::RecordSession& s = c.lib.records;
    const QString path = Track_Journal_Path(c.app.Trackfile);
    if (s.journalFd < 0) {
        s.journalFd = ::open(QFile::encodeName(path).constData(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666);
        if (s.journalFd < 0)
            return false;
        Sync_Folder_Of(path);
    }
    const off_t oldSize = ::lseek(s.journalFd, 0, SEEK_END);
    const qint64 half = record.size() / 2;
    const bool ok = oldSize >= 0 && writeAll(s.journalFd, record.constData(), half) && !c.lib.failAt("journal")
                    && writeAll(s.journalFd, record.constData() + half, record.size() - half)
                    && Sync_Written_Or_Defer(s.journalFd, path);
    if (!ok) {
        if (oldSize >= 0 && ::ftruncate(s.journalFd, oldSize) != 0)
            s.journaled = true;  // whatever stands there is read with its torn tail ignored
        return false;
    }
    s.pending += record;
    s.journaled = true;
    return true;
}

void closeJournal(LibraryState::RecordSession& s)
{
    if (s.journalFd >= 0)
        ::close(s.journalFd);
    s.journalFd = -1;
}

// Before a change other than a Replace of the session, and before any change
// at all when a killed program left a journal: the journal goes into the
// Trackfile first, so every write below sees the records as they stand.
bool settleJournal(LibraryContext& c, bool replace)
{
    LibraryState::RecordSession& s = c.lib.records;
    if (s.active && s.journaled)
        return replace || Flush_Track_Journal(c);
    if (!QFile::exists(Track_Journal_Path(c.app.Trackfile)))
        return true;
    s.loaded = false;
    c.lib.lastRecord = {};
    return Settle_Track_Journal(c.app.Trackfile);
}

// One attempt of a rewrite of some slots. The successor is built in memory
// and written beside the Trackfile, which it replaces only once all of it is
// on the disk, so a failure at any step leaves the Trackfile as it was.
Outcome spliceOnce(LibraryContext& c, const std::map<int, Change>& changes)
{
    QByteArray file;
    if (!currentTrackfile(c, &file))
        return Outcome::Failed;

    // Where each changed slot lies, found by hopping from record to record.
    struct Place {
        qint64 start, end;
        const Change* change;
    };
    std::vector<Place> places;
    places.reserve(changes.size());
    for (const auto& [id, change] : changes) {
        qint64 end = 0;
        const qint64 start = Find_Track_Slot(file, id, &end);
        if (start < 0)
            return Outcome::NoSlot;  // a missing slot does not come back by trying again
        places.push_back({start, end, &change});
    }
    std::sort(places.begin(), places.end(), [](const Place& a, const Place& b) { return a.start < b.start; });
    c.ui.yield();

    // During a session a record that changes length goes to the journal, and
    // once one has, so does every later one: the Trackfile on the disk then
    // stays as the session found it and the image, until the next flush.
    LibraryState::RecordSession& s = c.lib.records;
    if (s.active && places.size() == 1 && places[0].change->kind == Splice::Replace) {
        const Place& p = places[0];
        const QByteArray body = p.change->text + '\0';
        const QByteArray record = header(file.mid(p.start, 10), quint32(body.size())) + body;
        if (s.journaled || record.size() != p.end - p.start)
            return appendToJournal(c, record) ? Outcome::Done : Outcome::Failed;
    }

    QByteArray next;
    next.reserve(file.size() + 64);
    qint64 pos = 0;
    for (const Place& p : places) {
        next.append(file.constData() + pos, p.start - pos);
        pos = p.end;
        if (p.change->kind == Splice::Truncate) {
            pos = file.size();  // nothing follows the slot cut off
            break;
        }
        const QByteArray body = p.change->kind == Splice::Blank ? QByteArray(1, '\0') : p.change->text + '\0';
        next.append(header(file.mid(p.start, 10), quint32(body.size()))).append(body);
    }
    next.append(file.constData() + pos, file.size() - pos);

    bool ok = false;
    if (places.size() == 1 && next.size() == file.size() && places[0].change->kind != Splice::Truncate) {
        const Place& p = places[0];
        ok = writeInPlace(c, p.start, next.mid(p.start, p.end - p.start));
    } else {
        DurableFile out(c.app.Trackfile);
        ok = out.open() && !c.lib.failAt("copy-before") && !c.lib.failAt("write-record") && !c.lib.failAt("copy-after")
             && out.write(next) == next.size() && !c.lib.failAt("commit") && out.commit();
    }
    if (!ok) {
        c.lib.records.loaded = false;  // what stands on disk is read again
        return Outcome::Failed;
    }
    if (c.lib.records.active)
        c.lib.records.image = next;
    return Outcome::Done;
}

bool splice(LibraryContext& c, const std::map<int, Change>& changes)
{
    c.lib.lastRecord = {};  // offsets behind the slots move
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        switch (spliceOnce(c, changes)) {
        case Outcome::Done:
            return true;
        case Outcome::NoSlot:
            return false;
        case Outcome::Failed:
            c.ui.yield();
            break;
        }
    }
    return false;
}

bool splice(LibraryContext& c, int id, Splice kind, const QByteArray& text)
{
    return splice(c, {{id, Change{kind, text}}});
}

// The record appended last, rewritten where it stands: what follows an import
// (the relocation of the new track) then costs one record, not a copy of the
// whole Trackfile. Taken only when the file still ends with exactly that
// record; a failure puts the old record back.
enum class InPlace { Done, Failed, NotApplicable };

InPlace replaceLastRecord(LibraryContext& c, int id, const QByteArray& record)
{
    const LibraryState::LastRecord last = c.lib.lastRecord;
    if (last.id != id || last.offset < 0)
        return InPlace::NotApplicable;
    c.lib.records.loaded = false;
    QFile f(c.app.Trackfile);
    if (!f.open(QIODevice::ReadWrite) || f.size() != last.offset + last.size || !f.seek(last.offset))
        return InPlace::NotApplicable;
    const QByteArray old = f.read(last.size);
    if (old.size() != last.size || old.left(10) != Track_Tag(id) || lengthOf(old.constData()) != quint32(last.size - kHeaderSize))
        return InPlace::NotApplicable;
    const bool ok = f.resize(last.offset) && f.seek(last.offset) && !c.lib.failAt("write-record")
                    && f.write(record) == record.size() && f.flush()
                    && Sync_Written_Or_Defer(f.handle(), c.app.Trackfile);
    if (ok) {
        c.lib.lastRecord.size = record.size();
        return InPlace::Done;
    }
    f.resize(last.offset);
    if (f.seek(last.offset))
        f.write(old);
    f.flush();
    return InPlace::Failed;
}

}  // namespace

QByteArray Track_Tag(int id)
{
    return "TRCK" + QByteArray::number(id + 1000000).right(6);
}

QString Join_Track_Record(const TrackRow& row)
{
    QString text;
    for (int i = 0; i < TrackColumnCount; ++i) {
        if (i)
            text += QLatin1Char('|');
        text += row[i];
    }
    return text;
}

QByteArray Encode_Track_Record(int id, const QString& text)
{
    const QByteArray bytes = text.toUtf8();
    if (bytes.size() > kMaxTextBytes)
        return QByteArray();
    return header(Track_Tag(id), quint32(bytes.size() + 1)) + bytes + '\0';
}

qint64 Find_Track_Slot(const QByteArray& file, int id, qint64* recordEnd)
{
    const QByteArray tag = Track_Tag(id);
    qint64 pos = 0;
    while (pos + kHeaderSize <= file.size()) {
        const qint64 next = pos + kHeaderSize + lengthOf(file.constData() + pos);
        if (std::memcmp(file.constData() + pos, tag.constData(), 10) == 0) {
            if (next > file.size())
                return -1;
            *recordEnd = next;
            return pos;
        }
        pos = next;
    }
    return -1;
}

bool Flush_Track_Journal(LibraryContext& c)
{
    LibraryState::RecordSession& s = c.lib.records;
    if (!s.journaled)
        return true;
    // While journaled the Trackfile on the disk is the image; the journal
    // holds what the session wrote since.
    const QByteArray next = Apply_Track_Journal(s.image, s.pending);
    DurableFile out(c.app.Trackfile);
    if (!out.open() || c.lib.failAt("flush") || out.write(next) != next.size() || !out.commit())
        return false;
    // A kill before the journal is gone leaves it to be applied again, to
    // the same result.
    closeJournal(s);
    QFile::remove(Track_Journal_Path(c.app.Trackfile));
    s.image = next;
    s.pending.clear();
    s.journaled = false;
    c.lib.lastRecord = {};
    return true;
}

void End_Track_Session(LibraryContext& c)
{
    Flush_Track_Journal(c);  // a journal that stays is applied when the library is next opened
    closeJournal(c.lib.records);
    c.lib.records = {};
}

bool Replace_Track_Record(LibraryContext& c, int id, const QString& text)
{
    const QByteArray bytes = text.toUtf8();
    if (bytes.size() > kMaxTextBytes || !settleJournal(c, true))
        return false;
    if (c.lib.records.journaled)
        return splice(c, id, Splice::Replace, bytes);
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        switch (replaceLastRecord(c, id, Encode_Track_Record(id, text))) {
        case InPlace::Done:
            return true;
        case InPlace::NotApplicable:
            return splice(c, id, Splice::Replace, bytes);
        case InPlace::Failed:
            c.ui.yield();
            break;
        }
    }
    return false;
}

bool Blank_Track_Record(LibraryContext& c, int id)
{
    return settleJournal(c, false) && splice(c, id, Splice::Blank, QByteArray());
}

bool Truncate_At_Track_Record(LibraryContext& c, int id)
{
    return settleJournal(c, false) && splice(c, id, Splice::Truncate, QByteArray());
}

bool Append_Track_Record(LibraryContext& c, int id, const QString& text)
{
    const QByteArray record = Encode_Track_Record(id, text);
    if (record.isEmpty() || !settleJournal(c, false))
        return false;
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        QFile f(c.app.Trackfile);
        if (!f.open(QIODevice::ReadWrite)) {
            c.ui.yield();
            continue;
        }
        c.lib.records.loaded = false;
        // An append that fails is undone by cutting the file back to its old
        // length, so the Trackfile never keeps half a record.
        const qint64 oldSize = f.size();
        const qint64 half = record.size() / 2;
        const bool ok = f.seek(oldSize) && f.write(record.constData(), half) == half && !c.lib.failAt("append")
                        && f.write(record.constData() + half, record.size() - half) == record.size() - half
                        && f.flush() && Sync_Written_Or_Defer(f.handle(), c.app.Trackfile);
        if (ok) {
            c.lib.lastRecord = {id, oldSize, record.size()};
            return true;
        }
        f.resize(oldSize);
        f.close();
        c.ui.yield();
    }
    return false;
}

}  // namespace sonorit
