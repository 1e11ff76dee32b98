// The main window under the offscreen platform: start-up with a library on
// the command line, the shielding while it loads, the view of the list, and
// Open and Sort with their dialogs. What start-up logs the shell tests show.
#include "tests/support/library_maker.h"
#include "window_fixture.h"

using namespace sonorit;
using namespace sonorit::test;

namespace {

TEST_F(BaseWindowTest, OpensTheLibraryOfTheCommandLine)
{
    const QString music = state.paths.Music_Folder;
    const QString vkt = LibraryMaker(state.paths, env.path("libs/My Lib.vkt"))
                            .track(makeTrack("Frank Zappa", "Cosmik Debris", music + "/Zappa", "02 Cosmik Debris.mp3"))
                            .track(makeTrack("ABBA", "Dancing Queen", music + "/abba", "10 Dancing Queen.mp3"))
                            .track(makeTrack("Frank Zappa", "Yellow Snow", music + "/Zappa", "01 Yellow Snow.mp3"))
                            .track(makeTrack("ABBA", "Money", music + "/abba", "02 Money.mp3"))
                            // A 14th field; the user accepts the known items.
                            .text("AC|DC|01|T|03:00|1980|Rock|No|" + music.toUtf8() + "/zz|1.mp3|TRACK 5|2024|1|x")
                            .write().vkt;
    std::vector<bool> loading;
    QString loadingLabel;
    QObject::connect(find<QProgressBar>("ProgressBar1"), &QProgressBar::valueChanged, [&](int value) {
        if (value >= 1 && loading.empty()) {
            loading = view();
            loadingLabel = find<QLabel>("Label17")->text();
        }
    });
    QStringList seen;
    ModalAnswerer answerer({pressButton(seen, QMessageBox::Yes)});
    ASSERT_EQ(start(Join_Command_Line({'"' + vkt + '"'})), StartupResult::Started);
    const QString question = seen.value(0);
    EXPECT_TRUE(question.startsWith("Invalid MP3 Items: Artist: AC\nAlbum: DC\n")) << question.toStdString();
    EXPECT_TRUE(question.endsWith("\nUnknown Item 1: x\n\nDo you accept the known items?")) << question.toStdString();
    // Sorted by the core, folder-major and without regard to case.
    const QAbstractItemModel* model = list()->model();
    EXPECT_EQ(column(model, ColFilename), (QStringList{"02 Money.mp3", "10 Dancing Queen.mp3", "01 Yellow Snow.mp3",
                                                       "02 Cosmik Debris.mp3", "1.mp3"}));
    EXPECT_EQ(column(model, ColAlbum).last(), "DC");
    QStringList captions;
    for (int col = 0; col < model->columnCount(); ++col)
        captions << model->headerData(col, Qt::Horizontal).toString();
    EXPECT_EQ(captions.join(','),
              "Artist,Album,Track,Title,Time,Year,Genre,VA,Folder,Filename,ID,Last Changed,Filelength");
    EXPECT_EQ(base.windowTitle(), "ZEV's MP3 Sonorit - My Lib");

    // While it loads the library is shielded, the progress box is not greyed by the lock.
    EXPECT_EQ(loading, (std::vector<bool>{false, false, false, true, true, true}));
    EXPECT_EQ(loadingLabel, "Reading Library File: " + vkt);
    EXPECT_EQ(view(), kIdle);
    EXPECT_TRUE(list()->isEnabled());
    EXPECT_EQ(list()->currentIndex().row(), 0);

    // The timer applies the menu states that an open library gives.
    EXPECT_EQ(find<QTimer>("Main_Timer")->interval(), 200);
    waitForMenuUpdate();
    EXPECT_FALSE(state.Menu_Refresh_Wanted);
    EXPECT_TRUE(enabled("mnu_Library_Open") && enabled("mnu_Library_Sort") && enabled("mnu_Library_Exit"));
    EXPECT_TRUE(state.options.chkDestLibraryEnabled);
}

TEST_F(BaseWindowTest, LibraryMenuReportsFailureOpensAndSorts)
{
    ASSERT_EQ(start(QString()), StartupResult::Started);
    const QString broken = env.path("Broken.vkt");
    writeFile(broken, "[GENERAL]\nALBUMLIB_NAME=" + env.path("missing.tri").toUtf8() + "\nID_COUNT=3\n");
    const LibraryFiles files = LibraryMaker(state.paths, env.path("libs/Second.vkt"))
                                   .track(makeTrack("B", "b", "/m/b", "1.mp3"))
                                   .track(makeTrack("A", "a", "/m/a", "1.mp3")).write();
    QStringList seen;
    QString filters;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    ModalAnswerer answerer({[&](QWidget* modal) {
                                auto* d = qobject_cast<QFileDialog*>(modal);
                                ASSERT_NE(d, nullptr);
                                filters = d->nameFilters().join(';') + " | " + d->defaultSuffix();
                                typePath(seen, broken)(modal);
                            },
                            [&](QWidget* modal) {
                                icon = qobject_cast<QMessageBox*>(modal)->icon();
                                pressButton(seen, QMessageBox::Ok)(modal);
                            },
                            typePath(seen, files.vkt)});
    find<QAction>("mnu_Library_Open")->trigger();
    ASSERT_EQ(seen.size(), 2);
    EXPECT_EQ(seen[0] + " | " + filters, "Open Library | ZEV's MP3 Sonorit Library Files (*.vkt) | vkt");
    EXPECT_TRUE(seen[1].startsWith("Open Library Failure: An error occured whilst trying to open the selected Library."
                                   "\nPlease try again later.\nIf this error occurs always for this Library,\n\nthen "
                                   "most certainly the Library file is corrupt.\n")) << seen[1].toStdString();
    EXPECT_FALSE(seen[1].contains('\r'));
    EXPECT_EQ(icon, QMessageBox::Warning);
    EXPECT_EQ(base.windowTitle(), "ZEV's MP3 Sonorit - Broken");
    EXPECT_EQ(view(), kIdle);  // unlocked
    EXPECT_TRUE(find<QGroupBox>("FramePlaylist")->isEnabled());
    waitForMenuUpdate();
    EXPECT_FALSE(enabled("mnu_Library_Sort"));

    find<QAction>("mnu_Library_Open")->trigger();
    EXPECT_EQ(seen.value(2), seen[0]);
    EXPECT_EQ(base.windowTitle(), "ZEV's MP3 Sonorit - Second");
    const QAbstractItemModel* model = list()->model();
    EXPECT_EQ(column(model, ColArtist), (QStringList{"A", "B"}));

    // Sort renumbers the tracks; the view follows.
    waitForMenuUpdate();
    find<QAction>("mnu_Library_Sort")->trigger();
    EXPECT_EQ(column(model, ColID), (QStringList{"TRACK 1", "TRACK 2"}));
    EXPECT_EQ(view(), kIdle);
}

}  // namespace
