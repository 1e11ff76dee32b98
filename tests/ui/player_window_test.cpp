// Playback in the main window, through GStreamer into a fake sink: a playlist
// opened from the menu, a double click on its row, the marquee and the time
// moving; the large cover window with its picture, synced lyrics and the
// mirrored volume; the duplicate scan window.
#include "playback/player.h"
#include "tests/support/library_maker.h"
#include "tests/support/mp3_maker.h"
#include "tests/support/tag_bytes.h"
#include "ui/cpv_slider.h"
#include "ui/frm_play_cover.h"
#include "ui/playback_controller.h"
#include "window_fixture.h"

using namespace sonorit;
using namespace sonorit::test;

namespace {

QByteArray syllable(const QByteArray& text, quint32 ms) { return text + '\0' + be32(ms); }

// A tagged MP3 of `seconds`, with a picture and, if given, synced lyrics.
QString writeTrack(const QString& path, const QByteArray& artist, const QByteArray& title, double seconds,
                   const QByteArray& lyrics = {})
{
    QImage picture(64, 64, QImage::Format_RGB32);
    picture.fill(Qt::darkCyan);
    QByteArray jpeg;
    QBuffer buffer(&jpeg);
    buffer.open(QIODevice::WriteOnly);
    picture.save(&buffer, "JPG");
    QByteArray body = textFrame("TPE1", artist) + textFrame("TALB", "Album") + textFrame("TIT2", title)
                      + apicFrame("image/jpeg", 3, jpeg);
    if (!lyrics.isEmpty())
        body += frame("SYLT", QByteArray("\0eng\x02\x01", 6) + "words" + '\0' + lyrics);
    writeFile(path, tag(body) + makeMp3({seconds}));
    return path;
}

class PlayerWindowTest : public BaseWindowTest {
protected:
    PlaybackState& play() { return base.playback().state(); }
    QString text(const char* label) const { return find<QLabel>(label)->text(); }
    template <typename Done>
    bool waitFor(Done done, int ms = 4000)
    {
        QElapsedTimer t;
        t.start();
        while (!done() && t.elapsed() < ms)
            QTest::qWait(20);
        return done();
    }
    void doubleClickRow(QTreeView* view, int row)
    {
        const QRect r = view->visualRect(view->model()->index(row, 0));
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, r.center());
        QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, r.center());
    }
};

TEST_F(PlayerWindowTest, PlaylistOpensPlaysAndTheDisplayMoves)
{
    ASSERT_EQ(start(QString()), StartupResult::Started);
    const QString music = state.paths.Music_Folder;
    const QString a = writeTrack(music + "/A/one.mp3", "Alpha", "One", 4);
    const QString b = writeTrack(music + "/B/two song.mp3", "Beta", "Two", 4);
    const QString list = env.path("lists/mix.m3u");
    writeFile(list, "#ZEVM3U\r\n#ZEVINF:Alpha | Album | One | 00:04\r\n" + a.toUtf8()
                        + "\r\n#ZEVINF:Beta | Album | Two | 00:04\r\n" + b.toUtf8() + "\r\n");
    EXPECT_FALSE(enabled("mnu_PlayList_Save"));

    QStringList seen;
    ModalAnswerer answerer({typePath(seen, list)});
    find<QAction>("mnu_PlayList_Open")->trigger();
    EXPECT_EQ(seen, QStringList{"Open Playlist"});
    auto* view = find<QTreeView>("Play_List");
    EXPECT_EQ(column(view->model(), 2), (QStringList{"One", "Two"}));
    EXPECT_TRUE(view->isVisible());
    EXPECT_FALSE(find<QWidget>("PlayShield")->isVisible());
    // Opening plays the first entry; the entries of the list enable its menu.
    EXPECT_EQ(play().Now_Source, a);
    waitForMenuUpdate();
    EXPECT_TRUE(enabled("mnu_PlayList_Save") && enabled("mnu_PlayList_Clear") && enabled("mnu_Playlist_Duplicates"));

    doubleClickRow(view, 1);
    EXPECT_EQ(play().Now_Source, b);
    EXPECT_EQ(play().Now_File, state.Data_Folder() + "Play02.mp3");  // the other copy name
    EXPECT_EQ(view->currentIndex().row(), 1);

    // The marquee turns every tick, the time once a second.
    const QString scroll = "two song" + QString(20, ' ');
    ASSERT_TRUE(waitFor([&] { return !text("song").isEmpty(); }, 1000));
    const QString before = text("song");
    EXPECT_TRUE(before.size() == scroll.size() && (scroll + scroll).contains(before)) << before.toStdString();
    ASSERT_TRUE(waitFor([&] { return text("song") != before; }, 1000));
    EXPECT_EQ(text("song"), before.mid(1) + before[0]);
    ASSERT_TRUE(waitFor([&] { return text("Timer_Text") == "00:01/00:04"; }, 2500)) << text("Timer_Text").toStdString();
    EXPECT_EQ(find<ui::cpvSlider>("Time_Slider")->Max(), 4);
    EXPECT_EQ(find<ui::cpvSlider>("Time_Slider")->Value(), 1);

    // A drag of the time slider seeks; the poll's own writes do not.
    auto* time = find<ui::cpvSlider>("Time_Slider");
    const int y = time->height() / 2;
    QTest::mousePress(time, Qt::LeftButton, {}, QPoint(time->knobPosition(time->Value()) + 6, y));
    QTest::mouseMove(time, QPoint(time->knobPosition(3) + 9, y));
    EXPECT_EQ(time->Value(), 3);
    // While dragging, before any release.
    EXPECT_TRUE(waitFor([&] { return base.playback().player().currentPosition().value_or(0) >= 2.9; }, 300));
    QTest::mouseRelease(time, Qt::LeftButton, {}, QPoint(time->knobPosition(3) + 9, y));

    // Stop empties the display; Clear empties the list and its menu.
    find<QToolButton>("Stop_Track")->click();
    EXPECT_EQ(text("song"), "");
    EXPECT_EQ(text("Timer_Text"), "");
    find<QAction>("mnu_PlayList_Clear")->trigger();
    EXPECT_EQ(view->model()->rowCount(), 0);
    EXPECT_FALSE(enabled("mnu_PlayList_Save"));
}

TEST_F(PlayerWindowTest, CoverWindowShowsThePictureTheLyricsAndTheVolume)
{
    ASSERT_EQ(start(QString()), StartupResult::Started);
    const QByteArray lyrics = syllable("\nFirst line", 0) + syllable("\nSecond", 700) + syllable(" line", 800)
                              + syllable("\nThe last line", 1400);
    const QString song = writeTrack(state.paths.Music_Folder + "/sung.mp3", "Singer", "Sung", 5, lyrics);
    const QString plain = writeTrack(state.paths.Music_Folder + "/plain.mp3", "Singer", "Plain", 5);
    ASSERT_TRUE(base.playback().commands().Add_Entree_To_PlayList(song));
    ASSERT_TRUE(base.playback().commands().Add_Entree_To_PlayList(plain));
    play().PlayList_Pos = 1;
    base.playback().player().Play_Track();
    ASSERT_TRUE(play().Has_Lyrics);

    QTest::mouseDClick(find<QLabel>("Cover_Play"), Qt::LeftButton);
    ui::FrmPlayCover* cover = base.playback().coverWindow();
    ASSERT_NE(cover, nullptr);
    EXPECT_TRUE(cover->isVisible());
    EXPECT_TRUE(play().Cover_Window_Open);
    const auto child = [cover](const char* name) { return cover->findChild<QWidget*>(name); };
    // The track's own picture, which can be saved.
    const QImage shown = qobject_cast<QLabel*>(child("Image1"))->pixmap().toImage();
    const QColor centre = shown.pixelColor(shown.width() / 2, shown.height() / 2);
    EXPECT_LT(std::abs(centre.red() - 0) + std::abs(centre.green() - 128) + std::abs(centre.blue() - 128), 12)
        << centre.name().toStdString();
    EXPECT_TRUE(cover->findChild<QAction*>("mnu_image_save")->isEnabled());
    EXPECT_TRUE(cover->findChild<QAction*>("mnu_Lyrics")->isEnabled());

    // The lines follow the song: the current one white over its shadow, the
    // next one grey.
    const auto line = [&](int i) { return qobject_cast<QLabel*>(child(qPrintable(QString("Label1_%1").arg(i))))->text(); };
    ASSERT_TRUE(waitFor([&] { return line(2) == "First line"; })) << line(2).toStdString();
    EXPECT_EQ(line(0), "First line");
    EXPECT_EQ(line(3), "Second line");
    ASSERT_TRUE(waitFor([&] { return line(2) == "The last line"; })) << line(2).toStdString();
    EXPECT_EQ(line(3), "");

    // The volume sliders drive each other, both ways.
    auto* mainVolume = find<ui::cpvSlider>("Volume_Slider");
    auto* coverVolume = cover->findChild<ui::cpvSlider*>("Volume_Slider");
    mainVolume->setValue(50);
    EXPECT_EQ(coverVolume->Value(), 50);
    coverVolume->setValue(30);
    EXPECT_EQ(mainVolume->Value(), 30);

    // The size shows in the caption while resizing, then the track's name.
    const QString caption = cover->windowTitle();
    cover->resize(cover->width() + 40, cover->height() + 30);
    ASSERT_TRUE(waitFor([&] { return cover->windowTitle().contains(" X "); }, 500)) << caption.toStdString();
    EXPECT_EQ(cover->windowTitle(), QString("%1 X %2").arg(child("Image1")->width()).arg(child("Image1")->height()));
    ASSERT_TRUE(waitFor([&] { return cover->windowTitle() == caption; }, 2000)) << cover->windowTitle().toStdString();

    // Random from the cover window ticks the main window's box; the next
    // track without lyrics hides the lines.
    cover->findChild<QAction*>("mnu_PlayList_Random")->trigger();
    EXPECT_TRUE(find<QCheckBox>("CheckRandom")->isChecked());
    cover->findChild<QAction*>("mnu_player_next")->trigger();
    EXPECT_EQ(play().Now_Source, plain);
    EXPECT_FALSE(cover->findChild<QAction*>("mnu_Lyrics")->isEnabled());
    EXPECT_FALSE(child("Label1_2")->isVisible());

    // The picture saves under the proposed name, in the folder it remembers.
    QStringList seen;
    const QString saved = env.path("art/Singer - Album.jpg");
    QDir().mkpath(env.path("art"));
    {
        ModalAnswerer answerer({[&](QWidget* modal) {
            auto* dialog = qobject_cast<QFileDialog*>(modal);
            ASSERT_NE(dialog, nullptr);
            seen << dialog->windowTitle() << dialog->selectedFiles().value(0).section('/', -1);
            typePath(seen, saved)(modal);
        }});
        cover->findChild<QAction*>("mnu_image_save")->trigger();
    }
    EXPECT_EQ(seen.mid(0, 2), (QStringList{"Save As", "Singer - Album.jpg"}));
    EXPECT_EQ(readFile(saved), readFile(state.Data_Folder() + "Playing.jpg"));
    EXPECT_EQ(state.settings.GetSetting("Folders", "Art", ""), env.path("art"));

    // Double click on the picture closes the window.
    QTest::mouseDClick(child("Image1"), Qt::LeftButton);
    EXPECT_FALSE(cover->isVisible());
    EXPECT_FALSE(play().Cover_Window_Open);
}

TEST_F(PlayerWindowTest, LibraryRowsGoToThePlaylistOrPlayDirectly)
{
    const QString music = state.paths.Music_Folder;
    writeTrack(music + "/X/1 First.mp3", "X", "First", 3);
    writeTrack(music + "/X/2 Second.mp3", "X", "Second", 3);
    const QString vkt = LibraryMaker(state.paths, env.path("Lib.vkt"))
                            .track(makeTrack("X", "First", music + "/X", "1 First.mp3"))
                            .track(makeTrack("X", "Second", music + "/X", "2 Second.mp3"))
                            .write().vkt;
    ASSERT_EQ(start(Join_Command_Line({vkt})), StartupResult::Started);
    waitForMenuUpdate();
    EXPECT_TRUE(enabled("mnu_play") && enabled("mnu_add") && enabled("mnu_Album_Play"));
    EXPECT_TRUE(enabled("mnu_Tracks_Copy") && enabled("mnu_Retag"));

    // A double click on a library row adds it, and the first entry plays.
    doubleClickRow(list(), 0);
    EXPECT_EQ(column(find<QTreeView>("Play_List")->model(), 2), QStringList{"First"});
    EXPECT_EQ(play().Now_Source, music + "/X/1 First.mp3");
    EXPECT_FALSE(find<QLabel>("lblLibPlay")->isVisible());

    // Library play takes the row itself, through its own copy.
    list()->setCurrentIndex(list()->model()->index(1, 0));
    find<QAction>("mnu_Library_Play")->trigger();
    EXPECT_EQ(play().Now_Source, music + "/X/2 Second.mp3");
    EXPECT_EQ(play().Now_File, state.Data_Folder() + "Play00.mp3");
    EXPECT_TRUE(find<QLabel>("lblLibPlay")->isVisible());

    // Mute shows the other picture; Stop hides the library marker.
    auto* mute = find<QLabel>("mute");
    const QImage sound = mute->pixmap().toImage();
    QTest::mouseClick(mute, Qt::LeftButton);
    EXPECT_TRUE(play().Muted);
    EXPECT_NE(mute->pixmap().toImage(), sound);
    QTest::mouseClick(mute, Qt::LeftButton);
    EXPECT_EQ(mute->pixmap().toImage(), sound);
    find<QToolButton>("Stop_Track")->click();
    EXPECT_FALSE(find<QLabel>("lblLibPlay")->isVisible());
}

TEST_F(PlayerWindowTest, DuplicateScanRemovesTheTickedEntries)
{
    ASSERT_EQ(start(QString()), StartupResult::Started);
    PlaylistCommands& commands = base.playback().commands();
    const QString music = state.paths.Music_Folder;
    for (const char* name : {"a1", "b", "a2"})
        ASSERT_TRUE(commands.Add_Entree_To_PlayList(
            writeTrack(music + "/" + name + ".mp3", "Artist", name[0] == 'a' ? "Same" : "Other", 1)));
    waitForMenuUpdate();
    QStringList seen;
    QString groupText;
    ModalAnswerer answerer({[&](QWidget* modal) {
                                ASSERT_EQ(modal->objectName(), "FrmScanDups");
                                groupText = modal->findChild<QLabel*>("Text0")->text();
                                auto* rows = modal->findChild<QTreeWidget*>("List_Tracks");
                                ASSERT_EQ(rows->topLevelItemCount(), 2);
                                EXPECT_FALSE(modal->findChild<QPushButton*>("cmdNext")->isEnabled());
                                rows->topLevelItem(1)->setCheckState(0, Qt::Checked);
                                // Queued: the message box it brings must meet the answerer's next turn.
                                QMetaObject::invokeMethod(modal->findChild<QPushButton*>("cmdRemove"), "click",
                                                          Qt::QueuedConnection);
                            },
                            pressButton(seen, QMessageBox::Ok)});
    find<QAction>("mnu_Playlist_Duplicates")->trigger();
    EXPECT_EQ(groupText, "Track 'Same' by 'Artist' occurs more than once in the current playlist.\n"
                         "Check box(es) to select for removal.");
    ASSERT_EQ(seen.size(), 1);
    EXPECT_TRUE(seen[0].startsWith("Scan Result: No more duplicates found")) << seen[0].toStdString();
    EXPECT_EQ(play().PlayList_Count, 2);
    EXPECT_EQ(play().playFile(2), music + "/b.mp3");
    EXPECT_EQ(find<QTreeView>("Play_List")->model()->rowCount(), 2);
}

}  // namespace
