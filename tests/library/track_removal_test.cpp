// Removing, erasing and copying tracks over track, selection and album.
#include <gtest/gtest.h>

#include <QDateTime>
#include <QDir>
#include <sys/mount.h>
#include <unistd.h>

#include "library/track_removal.h"
#include "tests/support/small_fs.h"
#include "work_fixture.h"

using namespace sonorit;
using namespace sonorit::test;

namespace {

using Command = bool (*)(LibraryContext&);

TrackTags various(const QString& artist, const QString& album)
{
    TrackTags t = tags(artist, album, "1", artist);
    t.various = true;
    return t;
}

// Gold by Abba (two tracks), Hits by Cher, a various-artists album of two,
// and one track each without album; all dated in the past so that a copy
// that does not keep the date shows.
void fillFive(WorkFixture& f)
{
    f.fill({{"A/a1.mp3", tags("Abba", "Gold", "1", "One")},
             {"A/a2.mp3", tags("Abba", "Gold", "2", "Two")},
             {"C/c1.mp3", tags("Cher", "Hits", "1", "Three")},
             {"V/v1.mp3", various("X", "Mix")},
             {"V/v2.mp3", various("Y", "Mix")},
             {"N/n1.mp3", tags("Nobody", "", "1", "Lone")},
             {"N/n2.mp3", various("Z", "")}},
           0.2, QDateTime(QDate(2003, 4, 5), QTime(6, 7, 8)).toSecsSinceEpoch() * kSecondNs);
}

void select(WorkFixture& f, const QStringList& names)
{
    std::vector<int> rows;
    for (const QString& n : names)
        rows.push_back(f.rowOf(n));
    f.lib.MP3_List.setSelection(rows, rows.front());
}

QStringList names(const WorkFixture& f)
{
    QStringList n = f.column(ColFilename);
    n.sort();
    return n;
}

QString selectedName(const WorkFixture& f)
{
    const int s = f.lib.MP3_List.selected();
    return s < 0 ? QString() : f.lib.MP3_List.field(s, ColFilename);
}

}  // namespace

TEST(TrackRemoval, RemoveAndEraseOverTrackSelectionAndAlbum)
{
    struct Case {
        const char* name;
        Command command;
        QStringList selection;
        QStringList gone;
        bool erases;
    };
    const Case cases[] = {
        {"remove track", &mnu_Library_Remove_MP3, {"c1.mp3", "a1.mp3"}, {"c1.mp3"}, false},
        {"remove selection", &mnu_Library_Remove_Selection, {"v1.mp3", "a1.mp3"}, {"a1.mp3", "v1.mp3"}, false},
        {"remove album", &mnu_Library_Remove_Album, {"a2.mp3"}, {"a1.mp3", "a2.mp3"}, false},
        {"remove various album", &mnu_Library_Remove_Album, {"v2.mp3"}, {"v1.mp3", "v2.mp3"}, false},
        {"erase track", &mnu_Tracks_Delete_Track, {"a2.mp3", "c1.mp3"}, {"a2.mp3"}, true},
        {"erase selection", &mnu_Tracks_Delete_Selection, {"n1.mp3", "c1.mp3"}, {"c1.mp3", "n1.mp3"}, true},
        {"erase album", &mnu_Tracks_Delete_Album, {"a1.mp3"}, {"a1.mp3", "a2.mp3"}, true},
    };
    for (const Case& k : cases) {
        SCOPED_TRACE(k.name);
        WorkFixture f;
        fillFive(f);
        const QStringList before = f.filesUnderMain();
        QStringList expectedNames = names(f);
        QStringList expectedFiles = before;
        for (const QString& g : k.gone) {
            expectedNames.removeAll(g);
            if (k.erases)
                expectedFiles.removeIf([&](const QString& p) { return p.endsWith("/" + g); });
        }
        select(f, k.selection);
        EXPECT_TRUE(k.command(f.ctx));
        EXPECT_EQ(names(f), expectedNames);
        EXPECT_EQ(f.filesUnderMain(), expectedFiles);
        EXPECT_TRUE(f.ui.messages.empty());
        EXPECT_TRUE(f.recordsMatchList());
        EXPECT_EQ(f.general("ALBUM_COUNT"), QString::number(expectedNames.size()));
        EXPECT_NE(selectedName(f), QString());  // the panels show a row still listed

        // The library reopens with the same rows.
        const QStringList kept = names(f);
        ASSERT_TRUE(Open_Library(f.ctx, f.files.vkt));
        EXPECT_EQ(names(f), kept);
    }
}

TEST(TrackRemoval, AlbumCommandsNeedArtistAndAlbumAndSayWhichCommandToUse)
{
    const struct {
        Command command;
        const char* use;
    } commands[] = {{&mnu_Library_Remove_Album, "Remove Track"},
                    {&mnu_Tracks_Delete_Album, "Remove Track"},
                    {&mnu_Tracks_Copy_Album, "Copy Track to..."}};
    const struct {
        const char* track;
        const char* title;
        const char* unknown;
    } tracks[] = {{"n2.mp3", "Unknown Album", "Album"}, {"n1.mp3", "Unknown Artist/Album", "Artist/Album"}};
    WorkFixture f;
    fillFive(f);
    const QByteArray records = f.trackfile();
    const QStringList files = f.filesUnderMain();
    for (const auto& c : commands)
        for (const auto& t : tracks) {
            SCOPED_TRACE(std::string(c.use) + ", " + t.track);
            f.ui.messages.clear();
            f.ui.dialogResults = {f.env.path("Out")};
            f.lib.MP3_List.select(f.rowOf(t.track));
            c.command(f.ctx);
            ASSERT_EQ(f.ui.titles(), QStringList{t.title});
            EXPECT_EQ(f.ui.messages[0].text,
                      QString("No %1 known for this Track, please use '%2'").arg(t.unknown, c.use));
            EXPECT_EQ(f.ui.dialogResults.size(), 1u);  // no folder was asked for
        }
    EXPECT_EQ(f.trackfile(), records);
    EXPECT_EQ(f.filesUnderMain(), files);

    // Without a selected row nothing happens at all.
    f.lib.MP3_List.select(-1);
    f.ui.messages.clear();
    for (Command c : {&mnu_Library_Remove_MP3, &mnu_Tracks_Delete_Selection, &mnu_Tracks_Copy_Album})
        EXPECT_TRUE(c(f.ctx));
    EXPECT_TRUE(f.ui.messages.empty());
    EXPECT_EQ(f.trackfile(), records);
}

TEST(TrackRemoval, AFileThatCannotBeErasedIsReportedAndItsRowGoesAnyway)
{
    WorkFixture f;
    fillFive(f);
    // A folder on a file system mounted read-only refuses the deletion even
    // to root; a user without root is refused by the folder's permissions.
    const QString locked = f.main + "C";
    QDir().rename(locked, f.env.path("Aside"));
    SmallFileSystem fs(locked, 4096);
    if (fs.mounted()) {
        ASSERT_TRUE(QFile::copy(f.env.path("Aside/c1.mp3"), locked + "/c1.mp3"));
        ASSERT_EQ(::mount(nullptr, QFile::encodeName(locked).constData(), nullptr, MS_REMOUNT | MS_RDONLY,
                          "size=4096k"),
                  0);
    } else if (::geteuid() != 0) {
        QDir().rename(f.env.path("Aside"), locked);
        QFile::setPermissions(locked, QFileDevice::ReadOwner | QFileDevice::ExeOwner);
    } else {
        GTEST_SKIP() << fs.reason().toStdString();
    }
    const QByteArray bytes = readFile(locked + "/c1.mp3");
    select(f, {"c1.mp3", "a1.mp3"});
    EXPECT_FALSE(mnu_Tracks_Delete_Selection(f.ctx));
    ASSERT_EQ(f.ui.titles(), QStringList{"Erase error"});
    const QStringList lines = f.ui.messages[0].text.split("\n\r");
    ASSERT_EQ(lines.size(), 3);
    EXPECT_EQ(lines[0], "An error occured whilst trying to erase following track:");
    EXPECT_EQ(lines[1], locked + "/c1.mp3");
    EXPECT_TRUE(lines[2] == "Error 30: Read-only file system" || lines[2] == "Error 13: Permission denied")
        << lines[2].toStdString();
    EXPECT_EQ(f.rowOf("c1.mp3"), -1);
    EXPECT_EQ(f.rowOf("a1.mp3"), -1);
    EXPECT_FALSE(QFileInfo::exists(f.main + "A/a1.mp3"));
    EXPECT_EQ(readFile(locked + "/c1.mp3"), bytes);
    EXPECT_TRUE(f.recordsMatchList());
    QFile::setPermissions(locked, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
}

TEST(TrackRemoval, CopiesAreWholeKeepTheirDatesAndLeaveTheLibraryAlone)
{
    struct Case {
        const char* name;
        Command command;
        QStringList selection;
        QStringList copied;
    };
    const Case cases[] = {
        {"track", &mnu_Tracks_Copy_Track, {"c1.mp3", "a1.mp3"}, {"c1.mp3"}},
        {"selection", &mnu_Tracks_Copy_Selection, {"v1.mp3", "c1.mp3"}, {"c1.mp3", "v1.mp3"}},
        {"album", &mnu_Tracks_Copy_Album, {"v2.mp3"}, {"v1.mp3", "v2.mp3"}},
    };
    for (const Case& k : cases) {
        SCOPED_TRACE(k.name);
        WorkFixture f;
        fillFive(f);
        const QString out = f.env.path("Out");
        QDir().mkpath(out);
        // A file of the same name is replaced; another file stays.
        writeFile(out + "/" + k.copied[0], "older copy");
        writeFile(out + "/other.txt", "mine");
        const QByteArray records = f.trackfile();
        select(f, k.selection);
        f.ui.dialogResults = {out};
        EXPECT_TRUE(k.command(f.ctx));
        EXPECT_TRUE(f.ui.messages.empty());
        EXPECT_EQ(f.ui.dialogResults.size(), 0u);  // asked once
        QStringList expected = k.copied;
        expected << "other.txt";
        expected.sort();
        EXPECT_EQ(QDir(out).entryList(QDir::Files | QDir::Hidden), expected);
        for (const QString& name : k.copied) {
            const QString source = f.pathOf(f.rowOf(name));
            EXPECT_EQ(stateOf(out + "/" + name), stateOf(source));
        }
        EXPECT_EQ(readFile(out + "/other.txt"), "mine");
        EXPECT_EQ(f.trackfile(), records);

        // An empty answer copies nothing.
        QDir(out).removeRecursively();
        EXPECT_TRUE(k.command(f.ctx));
        EXPECT_FALSE(QFileInfo::exists(out));
    }
}

TEST(TrackRemoval, AFailedCopyStopsWithTheFileAndTheReason)
{
    WorkFixture f;
    fillFive(f);
    const QString out = f.env.path("Stick");
    SmallFileSystem fs(out, 1024);
    if (!fs.mounted())
        GTEST_SKIP() << fs.reason().toStdString();
    // Room for about one track: the second copy meets a full disk.
    const qint64 one = QFileInfo(f.main + "A/a1.mp3").size();
    fs.leaveFree((one + 4095) / 4096 * 4096 + 2048);
    select(f, {"a1.mp3"});
    f.ui.dialogResults = {out};
    EXPECT_FALSE(mnu_Tracks_Copy_Album(f.ctx));
    ASSERT_EQ(f.ui.titles(), QStringList{"Copy failure"});
    EXPECT_EQ(f.ui.messages[0].text, "The following track could not be copied:\n\r" + f.main + "A/a2.mp3\n\rto " + out
                                         + "/a2.mp3\n\rNo space left on device");
    EXPECT_EQ(QDir(out).entryList(QDir::Files | QDir::Hidden), (QStringList{".filler", "a1.mp3"}));
    EXPECT_EQ(readFile(out + "/a1.mp3"), readFile(f.main + "A/a1.mp3"));

    // A track whose file has gone stops the copy the same way.
    QDir(f.env.path("Out")).mkpath(".");
    QFile::remove(f.main + "C/c1.mp3");
    select(f, {"c1.mp3", "a2.mp3"});
    f.ui.messages.clear();
    f.ui.dialogResults = {f.env.path("Out")};
    EXPECT_FALSE(mnu_Tracks_Copy_Selection(f.ctx));
    ASSERT_EQ(f.ui.titles(), QStringList{"Copy failure"});
    EXPECT_TRUE(f.ui.messages[0].text.endsWith("\n\rThe track's file does not exist."));
    EXPECT_EQ(QDir(f.env.path("Out")).entryList(QDir::Files | QDir::Hidden), QStringList{"a2.mp3"});
}
