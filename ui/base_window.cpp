#include "base_window.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QTimer>
#include <QTreeView>

#include "base_layout.h"
#include "filename_tag.h"
#include "library_controller.h"
#include "list_selection.h"
#include "menu_bar.h"
#include "menus_library.h"
#include "menus_tree.h"
#include "platform/gstreamer/gst_media_graph.h"
#include "playback_controller.h"
#include "program_icon.h"
#include "qt_ui_port.h"
#include "shell/app_state.h"
#include "shell/menus.h"
#include "startup_host.h"
#include "super_tagging.h"
#include "tag_menus.h"
#include "tag_panels_view.h"
#include "tagedit/tag_edit_context.h"
#include "track_list_model.h"
#include "window_geometry.h"
#include "window_shield.h"

namespace sonorit::ui {

namespace {
// 15360 twips of the original layout, where the screen has room for it.
constexpr QSize kMinimumSize(1024, 520);
constexpr QSize kFirstSize(1280, 768);
}  // namespace

Base::Base(AppState& app, std::unique_ptr<MediaGraphFactory> graphs)
    : app_(app),
      model_(std::make_unique<TrackListModel>(lib_.MP3_List)),
      geometry_(std::make_unique<WindowGeometry>(app.settings)),
      geometrySave_(new QTimer(this)),
      mainTimer_(new QTimer(this))
{
    setObjectName(QStringLiteral("Base"));
    setWindowIcon(Program_Icon());
    lib_.durations = &durations_;

    const BaseWidgets w = Build_Base_Layout(this, model_.get());
    setCentralWidget(w.central);
    menus_ = std::make_unique<MenuBar>(this);
    shield_ = std::make_unique<WindowShield>(menus_->topLevelActions(), w.lockable, w.list, w.libShield, w.progress);
    ui_ = std::make_unique<QtUiPort>(this, w.list, *shield_, *w.progress);
    libraryController_ = std::make_unique<LibraryController>(LibraryContext{app_, lib_, *ui_},
                                                             [] { QCoreApplication::exit(0); });
    Build_Library_Menu(*menus_, *libraryController_);
    Build_Menu_Tree(*menus_);
    Bind_Track_File_Entries(*menus_, *libraryController_);
    menus_->bind(QStringLiteral("mnu_Library_Exit"), [this] { exitProgram(); });
    if (!graphs)
        graphs = std::make_unique<GstMediaGraphFactory>();
    PlaybackWidgets pw;
    pw.window = this;
    pw.playerFrame = w.player;
    pw.playList = w.playList;
    pw.playShield = w.playShield;
    pw.library = w.list;
    pw.menus = menus_.get();
    playback_ = std::make_unique<PlaybackController>(app_, lib_, *ui_, pw, std::move(graphs));
    tags_ = Fresh_Tag_State(app_);
    tagEdit_.reset(new TagEditContext{app_, lib_, *ui_, tags_, &playback_->state(), {}});
    Bind_Filename_Tagger(*menus_, *tagEdit_, this);
    tagPanels_ = std::make_unique<TagPanelsView>(*tagEdit_, Build_Tag_Panels(w.tag1, w.tag2, w.mpeg), w.list, w.playList);
    Bind_Tag_Menus(*menus_, tagPanels_->context(), this);
    Bind_Album_Tagger(*tagPanels_, this);
    menus_->setAfterEntry([this] { afterCommand(); });
    menus_->apply(sonorit::Update_Menus(MenuInputs{}));  // no library yet
    startupHost_ =
        std::make_unique<WindowStartupHost>(this, w.list, mainTimer_, *libraryController_, lib_.naming);

    geometry_->restore(this, kMinimumSize, kFirstSize);
    geometrySave_->setSingleShot(true);
    geometrySave_->setInterval(500);
    connect(geometrySave_, &QTimer::timeout, this, [this] { geometry_->save(this); });

    mainTimer_->setObjectName(QStringLiteral("Main_Timer"));
    mainTimer_->setInterval(MainTimer::kIntervalMs);
    timerWork_.updateMenus = [this] { Update_Menus(); };
    playback_->addTimerWork(timerWork_);
    // The CD panel does not exist yet, so its poll flag stays down.
    connect(mainTimer_, &QTimer::timeout, this,
            [this] { timerTicks_.tick(timerWork_, app_.Menu_Refresh_Wanted, false); });

    // The view follows the core's selection and tells it the user's; it hides
    // while the core works through the list in bulk.
    selection_ = std::make_unique<ListSelection>(w.list, model_.get());
    WindowShield* shield = shield_.get();
    connect(model_.get(), &TrackListModel::listHidden, this, [shield](bool hidden) { shield->setListHidden(hidden); });
}

Base::~Base() = default;

UiPort& Base::ui() { return *ui_; }
StartupHost& Base::startupHost() { return *startupHost_; }

void Base::Update_Menus()
{
    MenuInputs in;
    in.libraryOpen = app_.libraryOpen();
    in.backupFolderSet = !app_.Backup_Folder.isEmpty();
    in.playlistCount = playback_->state().PlayList_Count;
    const MenuStates states = sonorit::Update_Menus(in);
    tagPanels_->setLibraryOpen(in.libraryOpen);
    menus_->apply(states);
    app_.options.chkDestLibraryEnabled = states.chkDestLibraryEnabled;
    if (states.clearChkDestLibrary)
        app_.options.chkDestLibrary = false;
}

void Base::afterCommand()
{
    if (!app_.Menu_Refresh_Wanted)
        return;
    app_.Menu_Refresh_Wanted = false;
    Update_Menus();
}

void Base::exitProgram()
{
    geometrySave_->stop();
    geometry_->save(this);
    playback_->release();
    libraryController_->exit();
}

void Base::closeEvent(QCloseEvent* event)
{
    if (menus_->busy() || shield_->locked()) {
        event->ignore();
        return;
    }
    exitProgram();
    event->accept();
}

void Base::moveEvent(QMoveEvent* event)
{
    QMainWindow::moveEvent(event);
    if (isVisible())
        geometrySave_->start();
}

void Base::resizeEvent(QResizeEvent* event)
{
    QMainWindow::resizeEvent(event);
    if (isVisible())
        geometrySave_->start();
}

}  // namespace sonorit::ui
