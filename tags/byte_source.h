#pragma once
// Every parser of the tag engine reads through a ByteSource, so that tests and
// fuzzers can feed memory while the program reads files. Offsets here are
// 0-based; the tag functions speak 1-based file positions and convert once.
#include <QByteArray>
#include <QString>
#include <optional>

namespace sonorit {

class ByteSource {
public:
    virtual ~ByteSource() = default;
    virtual qint64 size() const = 0;
    // Copies up to n bytes from offset into dst; returns how many it copied:
    // fewer at the end of the data, 0 outside it or on a read error.
    virtual qint64 readAt(qint64 offset, char* dst, qint64 n) = 0;

    // The byte at offset, or -1 when there is none.
    int byteAt(qint64 offset);
    // Up to n bytes from offset; shorter at the end of the data.
    QByteArray bytesAt(qint64 offset, qint64 n);
    // True only when all n bytes were there.
    bool readExact(qint64 offset, char* dst, qint64 n) { return n >= 0 && readAt(offset, dst, n) == n; }

    // The walked count of audio frames, kept by Count_Mpeg_Frames: the walk
    // reads the whole file, and one listing asks for the count several times.
    std::optional<qint64> countedFrames;
};

class MemorySource final : public ByteSource {
public:
    explicit MemorySource(QByteArray data) : data_(std::move(data)) {}
    qint64 size() const override { return data_.size(); }
    qint64 readAt(qint64 offset, char* dst, qint64 n) override;

private:
    QByteArray data_;
};

// A regular file opened read-only for the life of the object. Anything else
// (a pipe, a device, a folder) is refused without waiting for it. Small reads
// are served from one cached block, so walking frames four bytes at a time
// costs no system call per fetch.
class FileSource final : public ByteSource {
public:
    explicit FileSource(const QString& path);
    ~FileSource() override;
    FileSource(const FileSource&) = delete;
    FileSource& operator=(const FileSource&) = delete;
    bool isOpen() const { return fd_ >= 0; }
    // The system's description of the failure to open, for messages.
    QString errorString() const { return error_; }
    qint64 size() const override { return size_; }
    qint64 readAt(qint64 offset, char* dst, qint64 n) override;

private:
    static constexpr qint64 kBlock = 16384;
    qint64 readFile(qint64 offset, char* dst, qint64 n);
    bool fill(qint64 blockStart);

    int fd_ = -1;
    QString error_;
    qint64 size_ = 0;
    QByteArray cache_;
    qint64 cacheStart_ = -1;
};

}  // namespace sonorit
