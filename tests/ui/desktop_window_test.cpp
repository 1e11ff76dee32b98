// The main window as a desktop expects it: a close request ends the program
// unless a library operation is at work, unbuilt menu entries are disabled,
// the window fits small screens and comes back where it was left, and the
// program has an icon.
#include "shell/file_type.h"
#include "ui/menu_bar.h"
#include "ui/program_icon.h"
#include "ui/window_geometry.h"
#include "window_fixture.h"

using namespace sonorit;
using namespace sonorit::test;

namespace {

TEST_F(BaseWindowTest, CloseRequestExitsUnlessALibraryOperationRuns)
{
    ASSERT_EQ(start(QString()), StartupResult::Started);
    const QString data = state.Data_Folder();
    for (const char* name : {"Cover.jpg", "Play01.mp3", "Temp.wav"})
        writeFile(data + name, "x");

    // While Library > Open waits in its dialog, a close request is refused.
    bool closedDuringOpen = true;
    ModalAnswerer answerer({[&](QWidget* modal) {
        closedDuringOpen = base.close();
        QMetaObject::invokeMethod(modal, "reject");
    }});
    find<QAction>("mnu_Library_Open")->trigger();
    EXPECT_FALSE(closedDuringOpen);
    EXPECT_TRUE(base.isVisible());
    EXPECT_TRUE(QFile::exists(data + "Play01.mp3"));

    // Idle, the close runs the exit: temporary pictures and copies go, the log stays.
    EXPECT_TRUE(base.close());
    EXPECT_EQ(QDir(data).entryList({"*.jpg", "*.mp3", "*.wav", "*.log"}, QDir::Files), QStringList{"Sonorit.log"});
}

TEST_F(BaseWindowTest, EntriesOfUnbuiltFeaturesStayDisabled)
{
    ASSERT_EQ(start(QString()), StartupResult::Started);
    const QStringList builtEntries{"mnu_Extra_Filename_Tag"};
    for (const char* top : {"mnu_convert", "mnu_Extra", "mnu_help"}) {
        for (QAction* entry : find<QMenu>(top)->actions())
            EXPECT_FALSE(entry->isEnabled() && !entry->isSeparator() && !builtEntries.contains(entry->objectName()))
                << entry->objectName().toStdString();
    }
    EXPECT_TRUE(enabled("mnu_Extra_Filename_Tag"));  // it works on a folder without a library too
    // Print is not built; the tag batches need a library.
    for (const char* name : {"mnu_Library_Print", "mnu_Retag", "mnu_Tag_sel"})
        EXPECT_FALSE(enabled(name)) << name;

    // Whatever the states say, an entry without a handler stays off; a bound
    // one follows them, and a submenu is on only with a handler inside.
    QMainWindow window;
    ui::MenuBar menus(&window);
    QMenu* sub = menus.addSubmenu(menus.menu("mnu_Tracks"), "mnu_play", "&Play");
    QAction* built = menus.addPlaceholder(sub, "mnu_Track_Play", "&Track");
    QAction* unbuilt = menus.addPlaceholder(sub, "mnu_All_Play", "A&ll");
    MenuStates states;
    states.enabled = {{"mnu_play", true}, {"mnu_Track_Play", true}, {"mnu_All_Play", true}};
    menus.apply(states);
    EXPECT_EQ((std::vector<bool>{sub->menuAction()->isEnabled(), built->isEnabled(), unbuilt->isEnabled()}),
              (std::vector<bool>{false, false, false}));
    int runs = 0;
    menus.bind("mnu_Track_Play", [&] { ++runs; });
    menus.apply(states);
    EXPECT_EQ((std::vector<bool>{sub->menuAction()->isEnabled(), built->isEnabled(), unbuilt->isEnabled()}),
              (std::vector<bool>{true, true, false}));
    built->trigger();
    EXPECT_EQ(runs, 1);
    states.enabled["mnu_Track_Play"] = false;
    menus.apply(states);
    EXPECT_FALSE(built->isEnabled());
}

TEST(WindowGeometry, FitsTheScreen)
{
    // 1600x1000 at a scale factor of 2 leaves 800x500 minus the panels.
    const QRect small(0, 0, 800, 470), large(0, 0, 1920, 1050), right(1920, 0, 1600, 1000);
    EXPECT_EQ(ui::Fit_Minimum_Size({1024, 520}, small), QSize(800, 470));
    EXPECT_EQ(ui::Fit_Minimum_Size({1024, 520}, large), QSize(1024, 520));
    struct Row {
        QRect remembered, available, expected;
    };
    const Row rows[] = {
        {{100, 50, 1280, 768}, large, {100, 50, 1280, 768}},
        {{100, 50, 1280, 768}, small, {0, 0, 800, 470}},          // cut and pulled in
        {{2500, 100, 1000, 700}, large, {920, 100, 1000, 700}},   // left on a screen that is gone
        {{-300, -20, 600, 400}, right, {1920, 0, 600, 400}},
        {{0, 0, 0, 0}, large, {}},                                // nothing remembered
    };
    for (const Row& r : rows)
        EXPECT_EQ(ui::Fit_Window_Rect(r.remembered, r.available), r.expected) << r.remembered.x() << "," << r.remembered.y();
}

TEST_F(BaseWindowTest, SizeAndPlaceComeBackInTheNextSession)
{
    ASSERT_EQ(start(QString()), StartupResult::Started);
    const QRect available = base.screen()->availableGeometry();
    EXPECT_LE(base.minimumWidth(), available.width());
    EXPECT_LE(base.minimumHeight(), available.height());
    EXPECT_TRUE(available.contains(base.frameGeometry())) << base.frameGeometry().width() << "x"
                                                          << base.frameGeometry().height() << " in " << available.width() << "x" << available.height();

    base.resize(base.minimumWidth(), base.minimumHeight() + 20);
    base.move(available.topLeft() + QPoint(0, 9));
    QTest::qWait(700);  // the write waits for the end of a drag
    const QString settings = QString::fromUtf8(readFile(state.paths.Settings_File));
    EXPECT_TRUE(settings.contains("[Window]")) << settings.toStdString();

    ui::Base next(state);
    EXPECT_EQ(next.size(), base.size());
    EXPECT_EQ(next.pos(), base.pos());
}

TEST(ProgramIcon, ShowsOnTheWindowAndInTheIconTheme)
{
    TempEnv env;
    const QByteArray svg = ui::Program_Icon_Svg();
    EXPECT_TRUE(svg.startsWith("<?xml") && svg.contains("<svg")) << svg.left(40).constData();
    // The window's icon needs nothing beyond Qt's own image formats.
    EXPECT_FALSE(ui::Program_Icon().pixmap(48, 48).isNull());
    Install_Program_Icon(svg);
    EXPECT_EQ(readFile(env.path(".local/share/icons/hicolor/scalable/apps/zevsonorit.svg")), svg);

    AppState state(env.paths());
    ui::Base base(state);
    EXPECT_FALSE(base.windowIcon().isNull());
}

}  // namespace
