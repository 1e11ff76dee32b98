// The Library menu of the main window: its entries' states follow the open
// library, and a command run through it asks through the window's dialogs,
// shields the list while it works and leaves the view following the files.
// What the commands do to a library the library tests show.
#include "tests/support/library_maker.h"
#include "tests/support/tagged_mp3.h"
#include "window_fixture.h"

using namespace sonorit;
using namespace sonorit::test;

namespace {

class LibraryMenuTest : public BaseWindowTest {
protected:
    // Restore needs a backup folder besides an open library; Print is not built.
    const QStringList kEntries = {"New",  "Open",     "Delete",   "Move",   "Add",  "Remove",
                                  "Refresh", "Sort", "Rename", "Relocate", "Backup", "Exit"};
    // The Library menu's own entries that are enabled, without "mnu_Library_".
    QStringList enabledEntries() const
    {
        QStringList on;
        for (const QString& name : kEntries) {
            if (enabled(("mnu_Library_" + name).toLatin1().constData()))
                on << name;
        }
        return on;
    }
    void trigger(const char* name) { find<QAction>(name)->trigger(); }
    // The rows of the view as "Folder/Filename", relative to the Main Folder.
    QStringList shownFiles() const
    {
        const QString main = state.Library_Main_Folder;
        QStringList files;
        for (int row = 0; row < list()->model()->rowCount(); ++row) {
            const QString path = list()->model()->index(row, ColFolder).data().toString() + "/"
                                 + list()->model()->index(row, ColFilename).data().toString();
            files << (path.startsWith(main) ? path.mid(main.size()) : path);
        }
        files.sort();
        return files;
    }
};

TEST_F(LibraryMenuTest, EntriesInOrderEnabledByTheOpenLibrary)
{
    ASSERT_EQ(start(QString()), StartupResult::Started);
    const QStringList always = {"New", "Open", "Delete", "Exit"};
    EXPECT_EQ(enabledEntries(), always);

    // The states change as soon as a command has opened or closed the
    // library, without waiting for the timer.
    const LibraryFiles files = LibraryMaker(state.paths, env.path("libs/Old.vkt"))
                                   .track(makeTrack("A", "a", "/m/a", "1.mp3")).write();
    QStringList seen;
    ModalAnswerer answerer({typePath(seen, files.vkt), typePath(seen, files.vkt),
                            noteDefaultThenPress(seen, QMessageBox::Yes)});
    trigger("mnu_Library_Open");
    EXPECT_EQ(enabledEntries(), kEntries);
    EXPECT_TRUE(enabled("mnu_Tracks_Copy_Album") && enabled("mnu_Tracks_Delete_Track"));
    state.Backup_Folder = env.path("backup/");
    base.Update_Menus();
    EXPECT_TRUE(enabled("mnu_Library_Restore"));
    EXPECT_EQ(list()->model()->rowCount(), 1);

    trigger("mnu_Library_Delete");
    ASSERT_EQ(seen.size(), 3);
    EXPECT_EQ(seen[1], "Delete Library");
    // Enter answers No to a question whose Yes deletes.
    EXPECT_EQ(seen[2].remove('&'), "Delete current Libray? default No");
    EXPECT_EQ(enabledEntries(), always);
    EXPECT_EQ(list()->model()->rowCount(), 0);
    EXPECT_EQ(base.windowTitle(), "ZEV's MP3 Sonorit");
    EXPECT_FALSE(QFile::exists(files.vkt) || QFile::exists(files.trackfile));
}

TEST_F(LibraryMenuTest, NewLibraryOverMp3FilesThenRenameAll)
{
    ASSERT_EQ(start(QString()), StartupResult::Started);
    const QString music = state.paths.Music_Folder;
    const auto tags = [](const char* artist, const char* album, const char* track, const char* title) {
        return TrackTags{artist, album, track, title, "1977", "Rock", false};
    };
    ASSERT_TRUE(writeTaggedMp3(music + "/In/b.mp3", tags("Kraftwerk", "Trans Europa Express", "2", "Spiegelsaal")));
    ASSERT_TRUE(writeTaggedMp3(music + "/In/a.mp3", tags("Kraftwerk", "Trans Europa Express", "1", "Europa Endlos")));
    ASSERT_TRUE(writeTaggedMp3(music + "/In/c.mp3", tags("Blondie", "Plastic Letters", "3", "Denis")));
    QDir().mkpath(env.path("libs"));
    const QString vkt = env.path("libs/Tunes.vkt");

    // The view as the long work goes on: at the first step of the progress
    // bar, where the user may also choose another menu entry.
    std::vector<bool> working;
    QString workingLabel;
    const char* chosenMeanwhile = nullptr;
    QObject::connect(find<QProgressBar>("ProgressBar1"), &QProgressBar::valueChanged, [&](int value) {
        if (value >= 1 && working.empty()) {
            working = view();
            workingLabel = find<QLabel>("Label17")->text();
            if (chosenMeanwhile)
                trigger(chosenMeanwhile);
        }
    });
    QStringList seen;
    ModalAnswerer answerer({typePath(seen, vkt), pressButton(seen, QMessageBox::Ok), typePath(seen, music),
                            pressButton(seen, QMessageBox::No), pressButton(seen, QMessageBox::Ok),
                            pressButton(seen, QMessageBox::Yes)});
    trigger("mnu_Library_New");
    ASSERT_TRUE(answerer.done()) << seen.join(" / ").toStdString();
    EXPECT_EQ(seen.mid(0, 4), (QStringList{"Save New Library As",
                                          "Info: Please locate or create the Main Folder for this new Library...",
                                          "Browse for Folder",
                                          "Library Backup?: Do you want to locate a Backup folder now?\n"
                                          "If so, please locate that folder."}));
    EXPECT_TRUE(seen[4].startsWith("MP3 Scan: ")) << seen[4].toStdString();
    EXPECT_EQ(seen[5], "Refresh Report: 0 tracks were removed.\n0 tracks were refreshed.\n3 tracks were added.\n\n"
                       "Do you want to sort the tracks in the library file?");
    EXPECT_EQ(working, (std::vector<bool>{false, false, false, true, true, true}));
    EXPECT_FALSE(workingLabel.isEmpty());

    // The list shows the tracks in folder and file order, numbered by the sort.
    const QAbstractItemModel* model = list()->model();
    EXPECT_EQ(column(model, ColTitle), (QStringList{"Europa Endlos", "Spiegelsaal", "Denis"}));
    EXPECT_EQ(column(model, ColID), (QStringList{"TRACK 1", "TRACK 2", "TRACK 3"}));
    EXPECT_EQ(shownFiles(), (QStringList{"In/a.mp3", "In/b.mp3", "In/c.mp3"}));
    EXPECT_EQ(list()->currentIndex().row(), 0);
    EXPECT_EQ(base.windowTitle(), "ZEV's MP3 Sonorit - Tunes");
    EXPECT_EQ(view(), kIdle);
    EXPECT_TRUE(enabled("mnu_Library_Rename") && enabled("mnu_Library_Relocate") && enabled("mnu_Library_Add"));

    // Rename All works behind the progress panel, which does not lock the
    // menus; an entry chosen meanwhile is ignored. The view follows the files.
    working.clear();
    chosenMeanwhile = "mnu_Library_New";
    list()->setCurrentIndex(model->index(2, 0));
    trigger("mnu_Library_Rename_All");
    chosenMeanwhile = nullptr;
    EXPECT_EQ(base.windowTitle(), "ZEV's MP3 Sonorit - Tunes");
    EXPECT_EQ(workingLabel, "Renaming all Files...");
    ASSERT_EQ(working.size(), kIdle.size());
    EXPECT_FALSE(working[2]);  // the list is hidden meanwhile
    EXPECT_EQ(view(), kIdle);
    EXPECT_EQ(shownFiles(), filesUnder(music, {"*.mp3"}));

}

}  // namespace
