#include "trackfile.h"

#include <QFile>
#include <QSaveFile>

#include "shell/app_state.h"
#include "shell/file_copy.h"
#include "shell/ui_port.h"

namespace sonorit {

namespace {

constexpr int kHeaderSize = 14;
constexpr int kMaxTextBytes = 32766;  // the length field is held in 16 signed bits
constexpr int kAttempts = 5;

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

// Hops through an open file from record to record. -1 if the slot is not there.
qint64 findSlot(QFile& f, const QByteArray& tag, qint64* recordEnd)
{
    const qint64 size = f.size();
    qint64 pos = 0;
    char h[kHeaderSize];
    while (pos + kHeaderSize <= size) {
        if (!f.seek(pos) || f.read(h, kHeaderSize) != kHeaderSize)
            return -1;
        const qint64 next = pos + kHeaderSize + lengthOf(h);
        if (QByteArray::fromRawData(h, 10) == tag) {
            if (next > size)
                return -1;
            *recordEnd = next;
            return pos;
        }
        pos = next;
    }
    return -1;
}

QString tempTrack(const LibraryContext& c) { return c.app.Data_Folder() + QStringLiteral("TempTrack.000"); }
QString tempBak(const LibraryContext& c) { return c.app.Data_Folder() + QStringLiteral("TempTrack.bak"); }

void dropTemps(LibraryContext& c)
{
    deleteUntilGone(tempTrack(c), &c.ui);
    deleteUntilGone(tempBak(c), &c.ui);
}

enum class Outcome { Done, Failed, NoSlot };

// One attempt of the copy-and-splice. The previous file stands in
// "TempTrack.000" and "TempTrack.bak" while the new one is built; the
// Trackfile itself is replaced only by the finished successor.
Outcome spliceOnce(LibraryContext& c, int id, Splice kind, const QByteArray& text)
{
    dropTemps(c);
    if (c.lib.failAt("backup") || !copyFileKeepingTime(c.app.Trackfile, tempTrack(c))
        || !copyFileKeepingTime(c.app.Trackfile, tempBak(c))) {
        dropTemps(c);
        return Outcome::Failed;
    }
    QFile in(tempTrack(c));
    if (!in.open(QIODevice::ReadOnly)) {
        dropTemps(c);
        return Outcome::Failed;
    }
    const QByteArray tag = Track_Tag(id);
    qint64 recordEnd = 0;
    const qint64 slot = findSlot(in, tag, &recordEnd);
    if (slot < 0) {
        in.close();
        dropTemps(c);
        return Outcome::NoSlot;
    }
    c.ui.yield();

    QSaveFile out(c.app.Trackfile);
    bool ok = out.open(QIODevice::WriteOnly) && in.seek(0) && !c.lib.failAt("copy-before")
              && copyBlocks(in, out, slot);
    if (ok && kind != Splice::Truncate) {
        const QByteArray body = kind == Splice::Blank ? QByteArray(1, '\0') : text + '\0';
        ok = !c.lib.failAt("write-record") && out.write(header(tag, quint32(body.size()))) == kHeaderSize
             && out.write(body) == body.size();
        ok = ok && in.seek(recordEnd) && !c.lib.failAt("copy-after")
             && copyBlocks(in, out, in.size() - recordEnd);
    }
    in.close();
    ok = ok && !c.lib.failAt("commit") && out.commit();
    if (!ok)
        out.cancelWriting();
    dropTemps(c);
    return ok ? Outcome::Done : Outcome::Failed;
}

bool splice(LibraryContext& c, int id, Splice kind, const QByteArray& text)
{
    c.lib.lastRecord = {};  // offsets behind the slot move
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        switch (spliceOnce(c, id, kind, text)) {
        case Outcome::Done:
            return true;
        case Outcome::NoSlot:
            return false;  // a missing slot does not come back by trying again
        case Outcome::Failed:
            c.ui.yield();
            break;
        }
    }
    return false;
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
    QFile f(c.app.Trackfile);
    if (!f.open(QIODevice::ReadWrite) || f.size() != last.offset + last.size || !f.seek(last.offset))
        return InPlace::NotApplicable;
    const QByteArray old = f.read(last.size);
    if (old.size() != last.size || old.left(10) != Track_Tag(id) || lengthOf(old.constData()) != quint32(last.size - kHeaderSize))
        return InPlace::NotApplicable;
    const bool ok = f.resize(last.offset) && f.seek(last.offset) && !c.lib.failAt("write-record")
                    && f.write(record) == record.size() && f.flush();
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
        if (file.mid(pos, 10) == tag) {
            if (next > file.size())
                return -1;
            *recordEnd = next;
            return pos;
        }
        pos = next;
    }
    return -1;
}

bool Replace_Track_Record(LibraryContext& c, int id, const QString& text)
{
    const QByteArray bytes = text.toUtf8();
    if (bytes.size() > kMaxTextBytes)
        return false;
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
    return splice(c, id, Splice::Blank, QByteArray());
}

bool Truncate_At_Track_Record(LibraryContext& c, int id)
{
    return splice(c, id, Splice::Truncate, QByteArray());
}

bool Append_Track_Record(LibraryContext& c, int id, const QString& text)
{
    const QByteArray record = Encode_Track_Record(id, text);
    if (record.isEmpty())
        return false;
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        QFile f(c.app.Trackfile);
        if (!f.open(QIODevice::ReadWrite)) {
            c.ui.yield();
            continue;
        }
        // An append that fails is undone by cutting the file back to its old
        // length, so the Trackfile never keeps half a record.
        const qint64 oldSize = f.size();
        const qint64 half = record.size() / 2;
        const bool ok = f.seek(oldSize) && f.write(record.constData(), half) == half && !c.lib.failAt("append")
                        && f.write(record.constData() + half, record.size() - half) == record.size() - half
                        && f.flush();
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
