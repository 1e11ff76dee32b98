#pragma once
// A file that takes the place of its target only once every byte of it is on
// the disk. It is written under a hidden name beside the target, flushed with
// each error checked, synced, and renamed over the target; the folder is then
// synced so the new name survives a power cut. Until commit() succeeds the
// target stays as it was, and a failed or abandoned file is removed.
#include <QByteArray>
#include <QIODevice>
#include <QString>
#include <sys/stat.h>

namespace sonorit {

class DurableFile : public QIODevice {
public:
    explicit DurableFile(QString target);
    ~DurableFile() override;

    // Only WriteOnly is offered.
    bool open(OpenMode mode = WriteOnly) override;
    bool isSequential() const override { return true; }
    // Keeps the permission bits of the file it replaces (or of `like`).
    void keepPermissionsOf(const QString& like) { permissionsOf_ = like; }
    // Gives the new file the permission bits and times of `source` (a copy
    // keeps its source's), set before the file replaces its target.
    void keepModeAndTimesOf(const struct stat& source)
    {
        keptMode_ = source.st_mode & 07777;
        keptTimes_[0] = source.st_atim;
        keptTimes_[1] = source.st_mtim;
        keepModeAndTimes_ = true;
    }
    // A file whose sync may wait for the end of a SyncBatch; false for one
    // whose source is deleted right after (a move across file systems).
    void setMayDeferSync(bool mayDefer) { mayDefer_ = mayDefer; }
    bool commit();
    void cancelWriting();

    const QString& target() const { return target_; }
    // The reason of the first failure, as the system words it.
    const QString& failure() const { return failure_; }

protected:
    qint64 readData(char*, qint64) override { return -1; }
    qint64 writeData(const char* data, qint64 size) override;

private:
    bool flushBuffer();
    bool fail(int error);

    QString target_;
    QString permissionsOf_;
    QByteArray temp_;  // encoded name of the file being written
    QByteArray buffer_;
    int fd_ = -1;
    bool mayDefer_ = true;
    bool keepModeAndTimes_ = false;
    mode_t keptMode_ = 0;
    timespec keptTimes_[2]{};
    QString failure_;
};

// The whole of `bytes` as the new content of `path`; `failure` gets the reason.
bool Write_File_Durably(const QString& path, const QByteArray& bytes, QString* failure = nullptr);

// Syncs the folder that holds `path`, so that a rename into it is durable.
void Sync_Folder_Of(const QString& path);

// Makes sure what was written to an open file descriptor is on the disk.
bool Sync_Written(int fd);
// The same for a file a batch may sync later (see SyncBatch).
bool Sync_Written_Or_Defer(int fd, const QString& path);

// While a command writes many small changes (an import of many files, a
// rename of a whole library), a sync to the disk costs a journal commit of
// milliseconds for each. While a SyncBatch lives, files are synced at most
// every 200 ms, and every file written meanwhile is synced when it ends.
// Each write is still complete and checked before it replaces its file, so
// a killed process leaves every file whole; a power cut may lose the last
// fraction of a second of changes, never a file.
class SyncBatch {
public:
    SyncBatch();
    ~SyncBatch();
    SyncBatch(const SyncBatch&) = delete;
    SyncBatch& operator=(const SyncBatch&) = delete;
};
// The same without a scope; each Begin needs its End.
void Begin_Sync_Batch();
void End_Sync_Batch();

// The hidden names DurableFile writes under carry this mark; a leftover of a
// killed process is removed by Remove_Partial_Files.
bool Is_Partial_File_Name(const QString& name);
void Remove_Partial_Files(const QString& folder);

}  // namespace sonorit
