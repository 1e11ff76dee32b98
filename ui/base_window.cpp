#include "base_window.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QTimer>
#include <QTreeView>

#include "base_layout.h"
#include "library_controller.h"
#include "list_selection.h"
#include "menu_bar.h"
#include "menus_library.h"
#include "qt_ui_port.h"
#include "shell/app_state.h"
#include "shell/menus.h"
#include "startup_host.h"
#include "track_list_model.h"
#include "window_shield.h"

namespace sonorit::ui {

namespace {
// 15360 twips of the original layout.
constexpr int kMinimumWidth = 1024;
}  // namespace

Base::Base(AppState& app)
    : app_(app), model_(std::make_unique<TrackListModel>(lib_.MP3_List)), mainTimer_(new QTimer(this))
{
    setObjectName(QStringLiteral("Base"));
    lib_.durations = &durations_;
    setMinimumWidth(kMinimumWidth);
    resize(kMinimumWidth + 256, 768);

    const BaseWidgets w = Build_Base_Layout(this, model_.get());
    setCentralWidget(w.central);
    menus_ = std::make_unique<MenuBar>(this);
    shield_ = std::make_unique<WindowShield>(menus_->topLevelActions(), w.lockable, w.list, w.libShield, w.progress);
    ui_ = std::make_unique<QtUiPort>(this, w.list, *shield_, *w.progress);
    libraryController_ = std::make_unique<LibraryController>(LibraryContext{app_, lib_, *ui_},
                                                             [] { QCoreApplication::exit(0); });
    Build_Library_Menu(*menus_, *libraryController_);
    menus_->setAfterEntry([this] { afterCommand(); });
    menus_->apply(sonorit::Update_Menus(MenuInputs{}));  // no library yet
    startupHost_ =
        std::make_unique<WindowStartupHost>(this, w.list, mainTimer_, *libraryController_, lib_.naming);

    mainTimer_->setObjectName(QStringLiteral("Main_Timer"));
    mainTimer_->setInterval(MainTimer::kIntervalMs);
    timerWork_.updateMenus = [this] { Update_Menus(); };
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
    const MenuStates states = sonorit::Update_Menus(in);
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

void Base::closeEvent(QCloseEvent* event)
{
    event->ignore();
}

}  // namespace sonorit::ui
