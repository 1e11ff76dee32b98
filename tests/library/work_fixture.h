#pragma once
// An open library over real MP3 files: the fixture's empty library with its
// Main Folder, sources outside it, and what the disk holds afterwards.
#include <QFileInfo>

#include "library/refresh.h"
#include "library/trackfile.h"
#include "library_fixture.h"
#include "tests/support/tagged_mp3.h"

namespace sonorit::test {

struct WorkFixture : LibraryFixture {
    QString main;  // the Main Folder, ending in "/"

    WorkFixture()
    {
        open();
        main = app.Library_Main_Folder;
    }
    // A tagged file outside the library.
    QString source(const QString& rel, const TrackTags& tags)
    {
        const QString path = env.path("Src/" + rel);
        writeTaggedMp3(path, tags);
        return path;
    }
    // The library filled by a refresh from these files (and any already there)
    // under the Main Folder, each dated `mtime` when one is given; what the
    // refresh said is cleared.
    void fill(const std::vector<std::pair<QString, TrackTags>>& files = {}, double seconds = 1, qint64 mtime = -1)
    {
        for (const auto& [rel, t] : files) {
            writeTaggedMp3(main + rel, t, Mp3Recipe{seconds});
            if (mtime >= 0)
                setMtime(main + rel, mtime);
        }
        ui.answers = {Answer::No};
        mnu_Library_Refresh(ctx);
        ui.messages.clear();
        ui.events.clear();
    }
    int rowOf(const QString& name) const { return lib.MP3_List.find(ColFilename, name); }
    // Every file under the Main Folder, relative to it, sorted.
    QStringList filesUnderMain() const { return filesUnder(main); }
    QString pathOf(int row) const
    {
        return lib.MP3_List.field(row, ColFolder) + '/' + lib.MP3_List.field(row, ColFilename);
    }
    // Every row's file, sorted.
    QStringList rowPaths() const
    {
        QStringList paths;
        for (int i = 0; i < lib.MP3_List.count(); ++i)
            paths << pathOf(i);
        paths.sort();
        return paths;
    }
    ::testing::AssertionResult everyRowExists() const
    {
        for (const QString& path : rowPaths())
            if (!QFileInfo::exists(path))
                return ::testing::AssertionFailure() << path.toStdString() << " is missing";
        return ::testing::AssertionSuccess();
    }
    // The Trackfile holds exactly the list's rows, each in the slot its ID names.
    ::testing::AssertionResult recordsMatchList() const
    {
        const QByteArray file = trackfile();
        for (int i = 0; i < lib.MP3_List.count(); ++i) {
            const int id = lib.MP3_List.field(i, ColID).mid(6).toInt();
            qint64 end = 0;
            const qint64 at = Find_Track_Slot(file, id, &end);
            if (at < 0 || file.mid(at, end - at) != trackRecord(id, recordText(lib.MP3_List.row(i))))
                return ::testing::AssertionFailure() << "row " << i << " (ID " << id << ") differs from its record";
        }
        return ::testing::AssertionSuccess();
    }
};

inline TrackTags tags(const QString& artist, const QString& album, const QString& track, const QString& title)
{
    return TrackTags{artist, album, track, title, "2001", "Pop", false};
}

}  // namespace sonorit::test
