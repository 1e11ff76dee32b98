#pragma once
// A library over real LAME files with a backup folder beside it, and what
// the disk holds: every file's bytes and modification time.
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <fcntl.h>
#include <sys/stat.h>

#include "library/backup.h"
#include "library/track_import.h"
#include "work_fixture.h"

namespace sonorit::test {

inline constexpr qint64 kHour = 3600;

inline qint64 mtimeNs(const QString& path)
{
    struct stat st {};
    if (::stat(QFile::encodeName(path).constData(), &st) != 0)
        return -1;
    return qint64(st.st_mtim.tv_sec) * 1000000000 + st.st_mtim.tv_nsec;
}

inline void setMtime(const QString& path, qint64 ns)
{
    const struct timespec t[2] = {{time_t(ns / 1000000000), 0}, {time_t(ns / 1000000000), long(ns % 1000000000)}};
    ::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), t, 0);
}

// Every file below a folder (hidden ones too) with its bytes and time.
struct Seen {
    QByteArray bytes;
    qint64 mtime;
    bool operator==(const Seen& o) const { return bytes == o.bytes && mtime == o.mtime; }
};
inline QMap<QString, Seen> filesBelow(const QString& folder)
{
    QMap<QString, Seen> out;
    QDirIterator it(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        out[QDir(folder).relativeFilePath(path)] = {readFile(path), mtimeNs(path)};
    }
    return out;
}

struct BackupFixture : WorkFixture {
    QString bak = env.path("Bak/");

    // A track written below the Main Folder and added to the library.
    QString track(const QString& rel, const QString& title, double seconds = 0.3)
    {
        const QString path = main + rel;
        writeTaggedMp3(path, tags("Abba", "Gold", "1", title), {seconds});
        EXPECT_TRUE(Add_MP3(ctx, path));
        return path;
    }
    // The Part's first run: no folder set, "Info", then the folder dialog.
    bool firstBackup()
    {
        QDir().mkpath(bak);
        ui.answers = {Answer::Yes, Answer::Ok};
        ui.dialogResults = {bak};
        return mnu_Library_Backup(ctx);
    }
    bool nextBackup(std::deque<Answer> more = {})
    {
        ui.messages.clear();
        ui.events.clear();
        ui.answers = {Answer::Yes, Answer::Yes};
        ui.answers.insert(ui.answers.end(), more.begin(), more.end());
        return mnu_Library_Backup(ctx);
    }
    QString report() const
    {
        for (const auto& m : ui.messages)
            if (m.title == "Backup report")
                return m.text;
        return "<none>";
    }
    // Each library track has its copy, byte for byte and of the same time.
    void expectMirrored(const QStringList& except = {}) const
    {
        for (int i = 0; i < lib.MP3_List.count(); ++i) {
            const QString rel = pathOf(i).mid(main.size());
            if (except.contains(rel))
                continue;
            EXPECT_EQ(readFile(bak + rel), readFile(pathOf(i))) << rel.toStdString();
            EXPECT_EQ(mtimeNs(bak + rel), mtimeNs(pathOf(i))) << rel.toStdString();
        }
    }
};

}  // namespace sonorit::test
