// The main window under the offscreen platform: start-up with a library on
// the command line, the shielding while it loads, the menus, the refusals
// (title-bar close, second start) and the Library menu's entries.
#include <QAbstractItemModel>
#include <QAction>
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QRegularExpression>
#include <QTest>
#include <QTimer>
#include <QTreeView>
#include <functional>
#include <gtest/gtest.h>

#include "platform/gstreamer/gst_encoders.h"
#include "shell/app_state.h"
#include "shell/session_log.h"
#include "tests/support/qt_gtest_print.h"
#include "shell/single_instance.h"
#include "shell/startup.h"
#include "tests/support/scripted_ui.h"
#include "tests/support/temp_env.h"
#include "ui/base_window.h"

using namespace sonorit;
using sonorit::test::readFile;
using sonorit::test::ScriptedUi;
using sonorit::test::TempEnv;
using sonorit::test::writeFile;

namespace {

// Fields of a track in the Trackfile's order, Artist to Filelength.
QStringList track(const QString& artist, const QString& folder, const QString& filename, int id)
{
    return {artist, QStringLiteral("Album of ") + artist, QStringLiteral("01"), QStringLiteral("Title ") + filename,
            QStringLiteral("03:30"), QStringLiteral("1979"), QStringLiteral("Pop"), QStringLiteral("0"), folder,
            filename, QStringLiteral("TRACK ") + QString::number(id), QStringLiteral("2024-01-02 10:00:00"),
            QStringLiteral("4100000")};
}

QByteArray trackRecord(int id, const QStringList& fields)
{
    const QByteArray text = fields.join(QLatin1Char('|')).toUtf8();
    const quint32 length = quint32(text.size()) + 1;
    QByteArray record = "TRCK" + QByteArray::number(1000000 + id).right(6);
    for (int shift = 24; shift >= 0; shift -= 8)
        record.append(char((length >> shift) & 0xff));
    return record + text + '\0';
}

// A library of these tracks in `folder`: the .vkt, its Trackfile and an empty
// IDfile (no free slots). Returns the .vkt's path.
QString writeLibrary(const QString& folder, const QString& name, const QList<QStringList>& tracks)
{
    QDir().mkpath(folder);
    const QString trackfile = folder + QLatin1Char('/') + name + QStringLiteral(".tri");
    const QString idfile = folder + QLatin1Char('/') + name + QStringLiteral("ID.tri");
    QByteArray records;
    for (int i = 0; i < tracks.size(); ++i)
        records += trackRecord(i + 1, tracks[i]);
    writeFile(trackfile, records);
    writeFile(idfile, QByteArray());
    const QByteArray count = QByteArray::number(tracks.size());
    const QString vkt = folder + QLatin1Char('/') + name + QStringLiteral(".vkt");
    writeFile(vkt, "[GENERAL]\nLIB_FOLDER=" + folder.toUtf8() + "/\nALBUMLIB_NAME=" + trackfile.toUtf8()
                       + "\nFREEID_NAME=" + idfile.toUtf8() + "\nALBUM_COUNT=" + count + "\nID_COUNT=" + count + "\n");
    return vkt;
}

QStringList column(const QAbstractItemModel* model, int col)
{
    QStringList values;
    for (int row = 0; row < model->rowCount(); ++row)
        values << model->index(row, col).data().toString();
    return values;
}

void waitUntil(const std::function<bool()>& done)
{
    for (int i = 0; i < 200 && !done(); ++i)
        QTest::qWait(10);
}

// Answers the next modal window from inside its own event loop. A window that
// the answer did not close is rejected after a while, so that a fault fails
// the test instead of hanging it.
class ModalAnswerer {
public:
    explicit ModalAnswerer(std::function<void(QWidget*)> answer) : answer_(std::move(answer))
    {
        QObject::connect(&timer_, &QTimer::timeout, [this] { poll(); });
        timer_.start(10);
    }
    int answered = 0;

private:
    void poll()
    {
        QWidget* modal = QApplication::activeModalWidget();
        if (!answered && modal) {
            ++answered;
            answeredWindow_ = modal;
            since_.start();
            answer_(modal);
        } else if (answered && modal == answeredWindow_ && since_.elapsed() > 3000) {
            QMetaObject::invokeMethod(modal, "reject");
        } else if (answered && modal != answeredWindow_) {
            timer_.stop();
        }
    }

    std::function<void(QWidget*)> answer_;
    QTimer timer_;
    QWidget* answeredWindow_ = nullptr;
    QElapsedTimer since_;
};

// What the window shows at the first step of a library load.
struct LoadingView {
    bool taken = false;
    bool libraryMenuEnabled = true;
    bool libraryFrameEnabled = true;
    bool listVisible = true;
    bool shieldVisible = false;
    bool progressVisible = false;
    bool progressEnabled = false;
    QString label17;
};

class NoWindow : public StartupHost {
public:
    void checkOpenLibraryFile(const QString& path) override { opened << path; }
    QStringList opened;
};

class BaseWindowTest : public ::testing::Test {
protected:
    TempEnv env;
    AppState state{env.paths()};
    ui::Base base{state};
    SingleInstance instance;
    SessionLog log;

    StartupResult start(const QString& commandLine)
    {
        return Run_Startup(state, base.ui(), base.startupHost(), instance, log, commandLine,
                           QCoreApplication::applicationFilePath());
    }
    template <typename T>
    T* find(const char* name) const
    {
        return base.findChild<T*>(QLatin1String(name));
    }
    bool enabled(const char* action) const { return find<QAction>(action)->isEnabled(); }
    QTreeView* list() const { return find<QTreeView>("MP3_List"); }
    QStringList logLines() const
    {
        return QString::fromUtf8(readFile(state.Data_Folder() + QStringLiteral("Sonorit.log")))
            .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }
    void waitForMenuUpdate()
    {
        waitUntil([this] { return !state.Menu_Refresh_Wanted; });
    }
};

TEST_F(BaseWindowTest, OpensTheLibraryOfTheCommandLine)
{
    const QString music = state.paths.Music_Folder;
    const QString vkt = writeLibrary(env.path(QStringLiteral("libs")), QStringLiteral("My Lib"),
                                     {track(QStringLiteral("Frank Zappa"), music + QStringLiteral("/Zappa"),
                                            QStringLiteral("02 Cosmik Debris.mp3"), 1),
                                      track(QStringLiteral("ABBA"), music + QStringLiteral("/abba"),
                                            QStringLiteral("10 Dancing Queen.mp3"), 2),
                                      track(QStringLiteral("Frank Zappa"), music + QStringLiteral("/Zappa"),
                                            QStringLiteral("01 Yellow Snow.mp3"), 3),
                                      track(QStringLiteral("ABBA"), music + QStringLiteral("/abba"),
                                            QStringLiteral("02 Money.mp3"), 4)});

    LoadingView loading;
    QObject::connect(find<QProgressBar>("ProgressBar1"), &QProgressBar::valueChanged, [&](int value) {
        if (value < 1 || loading.taken)
            return;
        loading = {true,
                   find<QAction>("mnu_Library")->isEnabled(),
                   find<QGroupBox>("FrameLibrary")->isEnabled(),
                   list()->isVisible(),
                   find<QWidget>("LibShield")->isVisible(),
                   find<QWidget>("ProgressBox")->isVisible(),
                   find<QWidget>("ProgressBox")->isEnabled(),
                   find<QLabel>("Label17")->text()};
    });

    ASSERT_EQ(start(Join_Command_Line({QLatin1Char('"') + vkt + QLatin1Char('"')})), StartupResult::Started);

    // Sorted by the core, folder-major and without regard to case.
    const QAbstractItemModel* model = list()->model();
    EXPECT_EQ(column(model, ColFilename),
              QStringList({QStringLiteral("02 Money.mp3"), QStringLiteral("10 Dancing Queen.mp3"),
                           QStringLiteral("01 Yellow Snow.mp3"), QStringLiteral("02 Cosmik Debris.mp3")}));
    QStringList firstRow;
    for (int col = 0; col < model->columnCount(); ++col)
        firstRow << model->index(0, col).data().toString();
    EXPECT_EQ(firstRow, track(QStringLiteral("ABBA"), music + QStringLiteral("/abba"), QStringLiteral("02 Money.mp3"), 4));
    QStringList captions;
    for (int col = 0; col < model->columnCount(); ++col)
        captions << model->headerData(col, Qt::Horizontal).toString();
    EXPECT_EQ(captions.join(QLatin1Char(',')),
              QStringLiteral("Artist,Album,Track,Title,Time,Year,Genre,VA,Folder,Filename,ID,Last Changed,Filelength"));
    EXPECT_EQ(base.windowTitle(), QStringLiteral("ZEV's MP3 Sonorit - My Lib"));

    ASSERT_TRUE(loading.taken);
    EXPECT_FALSE(loading.libraryMenuEnabled);
    EXPECT_FALSE(loading.libraryFrameEnabled);
    EXPECT_FALSE(loading.listVisible);
    EXPECT_TRUE(loading.shieldVisible);
    EXPECT_TRUE(loading.progressVisible);
    EXPECT_TRUE(loading.progressEnabled);  // not greyed by the lock
    EXPECT_EQ(loading.label17, QStringLiteral("Reading Library File: ") + vkt);
    EXPECT_TRUE(enabled("mnu_Library"));
    EXPECT_TRUE(find<QGroupBox>("FrameLibrary")->isEnabled());
    EXPECT_TRUE(list()->isVisible());
    EXPECT_TRUE(list()->isEnabled());
    EXPECT_FALSE(find<QWidget>("LibShield")->isVisible());

    // The core's selection shows in the view, and the user's reaches the core.
    EXPECT_EQ(list()->currentIndex().row(), 0);
    list()->setCurrentIndex(model->index(2, 0));
    EXPECT_EQ(base.library().MP3_List.selected(), 2);

    const QStringList lines = logLines();
    ASSERT_FALSE(lines.isEmpty());
    EXPECT_TRUE(QRegularExpression(QStringLiteral("^Program Start at \\d\\d:\\d\\d:\\d\\d on \\d{4}-\\d\\d-\\d\\d$"))
                    .match(lines.first())
                    .hasMatch())
        << lines.first().toStdString();
    const QStringList expected = {
        QStringLiteral("Initiating VKT filetype"),
        QStringLiteral("Associating extension 'vkt' with ZEV's MP3 Sonorit"),
        QStringLiteral("Initiating start-up variables"),
        QStringLiteral("Initiating combo's and array's"),
        QStringLiteral("Initiating Audio CD drivelist"),
        QStringLiteral("Getting Library data folder"),
        QStringLiteral("Library data folder is set to ") + music,
        QStringLiteral("Getting Playlist data folder"),
        QStringLiteral("Playlist data folder is set to ") + music,
        QStringLiteral("Setting default Library folder"),
        QStringLiteral("Clearing backup folder"),
        QStringLiteral("Setting default rename and relocate options to 'Options' window"),
        QStringLiteral("Getting startup library options"),
        QStringLiteral("Inspecting CommandLine"),
        QStringLiteral("Opening ") + vkt + QStringLiteral(" at startup"),
        QStringLiteral("Get Rip settings"),
        QStringLiteral("Set Rip settings to 'Options' window"),
        QStringLiteral("Save Rip settings"),
        Wma_Encoder_Available() ? QStringLiteral("WMA available") : QStringLiteral("WMA not available"),
        QStringLiteral("Transferring Main Info to 'Options' window"),
        QStringLiteral("Transferring Tag settings to 'Options' window"),
        QStringLiteral("Setting up available 'Menu' functions"),
        QStringLiteral("Enabling timer events")};
    EXPECT_EQ(lines.mid(1), expected);
    EXPECT_EQ(state.settings.GetSetting(QStringLiteral("Startup"), QStringLiteral("Last_Used_Lib"), QString()), vkt);

    // The timer applies the menu states that an open library gives.
    EXPECT_EQ(find<QTimer>("Main_Timer")->interval(), 200);
    waitForMenuUpdate();
    EXPECT_FALSE(state.Menu_Refresh_Wanted);
    EXPECT_TRUE(enabled("mnu_Library_Open"));
    EXPECT_TRUE(enabled("mnu_Library_Sort"));
    EXPECT_TRUE(enabled("mnu_Library_Exit"));
    EXPECT_TRUE(state.options.chkDestLibraryEnabled);

    EXPECT_FALSE(base.close());
    EXPECT_TRUE(base.isVisible());
    EXPECT_GE(base.minimumWidth(), 1024);
}

TEST_F(BaseWindowTest, StartsWithoutLibraryAndRefusesASecondStart)
{
    ASSERT_EQ(start(QString()), StartupResult::Started);
    EXPECT_EQ(base.windowTitle(), QStringLiteral("ZEV's MP3 Sonorit"));
    EXPECT_EQ(list()->model()->rowCount(), 0);
    const QStringList lines = logLines();
    const int inspecting = static_cast<int>(lines.indexOf(QStringLiteral("Inspecting CommandLine")));
    ASSERT_GE(inspecting, 0);
    EXPECT_EQ(lines.value(inspecting + 1), QStringLiteral("Get Rip settings"));
    state.options.chkDestLibrary = true;
    waitForMenuUpdate();
    EXPECT_TRUE(enabled("mnu_Library_Open"));
    EXPECT_FALSE(enabled("mnu_Library_Sort"));
    EXPECT_FALSE(state.options.chkDestLibrary);

    // A second program of the same user stops before it touches a file.
    const QByteArray firstLog = readFile(state.Data_Folder() + QStringLiteral("Sonorit.log"));
    AppState secondState(env.paths());
    ScriptedUi secondUi;
    NoWindow secondWindow;
    SingleInstance secondInstance;
    SessionLog secondLog;
    EXPECT_EQ(Run_Startup(secondState, secondUi, secondWindow, secondInstance, secondLog, QString(), QString()),
              StartupResult::AlreadyRunning);
    ASSERT_EQ(secondUi.messages.size(), 1u);
    EXPECT_EQ(secondUi.messages[0].text, QStringLiteral("ZEV's MP3 Sonorit already running"));
    EXPECT_EQ(secondUi.messages[0].title, QString());
    EXPECT_EQ(secondUi.messages[0].buttons, Buttons::Ok);
    EXPECT_EQ(readFile(state.Data_Folder() + QStringLiteral("Sonorit.log")), firstLog);
}

TEST_F(BaseWindowTest, ReportsALibraryThatCannotBeReadAndUnlocks)
{
    const QString vkt = env.path(QStringLiteral("Broken.vkt"));
    writeFile(vkt, "[GENERAL]\nALBUMLIB_NAME=" + env.path(QStringLiteral("missing.tri")).toUtf8() + "\nID_COUNT=3\n");

    QString title, text;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    ModalAnswerer answerer([&](QWidget* modal) {
        auto* box = qobject_cast<QMessageBox*>(modal);
        ASSERT_NE(box, nullptr);
        title = box->windowTitle();
        text = box->text();
        icon = box->icon();
        box->button(QMessageBox::Ok)->click();
    });
    ASSERT_EQ(start(vkt), StartupResult::Started);

    EXPECT_EQ(answerer.answered, 1);
    EXPECT_EQ(title, QStringLiteral("Open Library Failure"));
    EXPECT_EQ(icon, QMessageBox::Warning);
    EXPECT_FALSE(text.contains(QLatin1Char('\r')));
    EXPECT_TRUE(text.startsWith(QStringLiteral("An error occured whilst trying to open the initial Library.\n"
                                               "Please try again later.\n"
                                               "If this error occurs always for this Library,\n"
                                               "\nthen most certainly the Library file is corrupt.\n")))
        << text.toStdString();

    EXPECT_EQ(base.windowTitle(), QStringLiteral("ZEV's MP3 Sonorit - Broken"));
    EXPECT_TRUE(enabled("mnu_Library"));
    EXPECT_TRUE(find<QGroupBox>("FramePlaylist")->isEnabled());
    EXPECT_TRUE(list()->isVisible());
    EXPECT_FALSE(find<QWidget>("LibShield")->isVisible());
    waitForMenuUpdate();
    EXPECT_FALSE(enabled("mnu_Library_Sort"));
}

TEST_F(BaseWindowTest, AsksBeforeTakingARecordWithUnknownItems)
{
    QStringList odd = track(QStringLiteral("AC"), QStringLiteral("/m/acdc"), QStringLiteral("1.mp3"), 1);
    odd.insert(1, QStringLiteral("DC"));  // the artist "AC|DC" made a 14th field
    const QString vkt = writeLibrary(env.path(QStringLiteral("libs")), QStringLiteral("Odd"), {odd});

    QString title, text;
    ModalAnswerer answerer([&](QWidget* modal) {
        auto* box = qobject_cast<QMessageBox*>(modal);
        ASSERT_NE(box, nullptr);
        title = box->windowTitle();
        text = box->text();
        box->button(QMessageBox::Yes)->click();
    });
    ASSERT_EQ(start(vkt), StartupResult::Started);

    EXPECT_EQ(title, QStringLiteral("Invalid MP3 Items"));
    EXPECT_TRUE(text.startsWith(QStringLiteral("Artist: AC\nAlbum: DC\n"))) << text.toStdString();
    EXPECT_TRUE(text.endsWith(QStringLiteral("\nUnknown Item 1: 4100000\n\nDo you accept the known items?")))
        << text.toStdString();
    // Accepted: the known items make the row.
    ASSERT_EQ(list()->model()->rowCount(), 1);
    EXPECT_EQ(list()->model()->index(0, ColArtist).data().toString(), QStringLiteral("AC"));
    EXPECT_EQ(list()->model()->index(0, ColAlbum).data().toString(), QStringLiteral("DC"));
}

TEST_F(BaseWindowTest, LibraryMenuOpensSortsAndExits)
{
    ASSERT_EQ(start(QString()), StartupResult::Started);
    const QString folder = env.path(QStringLiteral("libs"));
    const QString vkt = writeLibrary(folder, QStringLiteral("Second"),
                                     {track(QStringLiteral("B"), QStringLiteral("/m/b"), QStringLiteral("1.mp3"), 1),
                                      track(QStringLiteral("A"), QStringLiteral("/m/a"), QStringLiteral("1.mp3"), 2)});

    QString dialogTitle, suffix;
    QStringList filters;
    ModalAnswerer chooser([&](QWidget* modal) {
        auto* dialog = qobject_cast<QFileDialog*>(modal);
        ASSERT_NE(dialog, nullptr);
        dialogTitle = dialog->windowTitle();
        filters = dialog->nameFilters();
        suffix = dialog->defaultSuffix();
        // Typed as a user would: selectFile() leaves a focused name field alone.
        dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(vkt);
        QMetaObject::invokeMethod(dialog, "accept");
    });
    find<QAction>("mnu_Library_Open")->trigger();
    EXPECT_EQ(dialogTitle, QStringLiteral("Open Library"));
    EXPECT_EQ(filters, QStringList{QStringLiteral("ZEV's MP3 Sonorit Library Files (*.vkt)")});
    EXPECT_EQ(suffix, QStringLiteral("vkt"));
    EXPECT_EQ(base.windowTitle(), QStringLiteral("ZEV's MP3 Sonorit - Second"));
    const QAbstractItemModel* model = list()->model();
    EXPECT_EQ(column(model, ColArtist), QStringList({QStringLiteral("A"), QStringLiteral("B")}));

    // Sort numbers the tracks anew in list order, on disk and in the view.
    find<QAction>("mnu_Library_Sort")->trigger();
    EXPECT_EQ(column(model, ColID), QStringList({QStringLiteral("TRACK 1"), QStringLiteral("TRACK 2")}));
    const QByteArray trackfile = readFile(folder + QStringLiteral("/Second.tri"));
    EXPECT_TRUE(trackfile.startsWith(trackRecord(1, track(QStringLiteral("A"), QStringLiteral("/m/a"),
                                                          QStringLiteral("1.mp3"), 1))));
    EXPECT_TRUE(list()->isVisible());
    EXPECT_TRUE(enabled("mnu_Library"));

    // Exit leaves no temporary pictures or audio copies behind; the log stays.
    const QString data = state.Data_Folder();
    for (const char* name : {"Cover.jpg", "Play00.mp3", "Temp.wav"})
        writeFile(data + QLatin1String(name), "x");
    find<QAction>("mnu_Library_Exit")->trigger();
    EXPECT_EQ(QDir(data).entryList(QDir::Files), QStringList{QStringLiteral("Sonorit.log")});
}

}  // namespace
