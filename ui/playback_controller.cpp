#include "playback_controller.h"

#include <QAction>
#include <QCheckBox>
#include <QGroupBox>
#include <QMenu>
#include <QToolButton>
#include <QTreeView>

#include "cpv_slider.h"
#include "frm_play_cover.h"
#include "frm_scan_dups.h"
#include "library/track_list.h"
#include "menu_bar.h"
#include "platform/mpris/mpris_service.h"
#include "platform/mpris/player_controls.h"
#include "play_list_model.h"
#include "qt_player_view.h"

namespace sonorit::ui {

PlaybackController::PlaybackController(AppState& app, LibraryState& lib, UiPort& ui, PlaybackWidgets widgets,
                                       std::unique_ptr<MediaGraphFactory> graphs)
    : app_(app), ui_(ui), w_(widgets), graphs_(std::move(graphs))
{
    model_ = std::make_unique<PlayListModel>(play_.Play_List);
    w_.playList->setModel(model_.get());
    PlayerViewParts parts;
    parts.panel = Build_Player_Panel(w_.playerFrame);
    parts.playList = w_.playList;
    parts.playShield = w_.playShield;
    parts.playListMenu = w_.menus->menu(QStringLiteral("mnu_PlayList"))->menuAction();
    parts.exportEntry = w_.playerFrame->window()->findChild<QAction*>(QStringLiteral("mnu_PlayList_Export"));
    parts.model = model_.get();
    view_ = std::make_unique<QtPlayerView>(parts);
    player_ = std::make_unique<Player>(PlaybackContext{app, lib, play_, ui, *graphs_, *view_});
    bindPlayback(player_->context());
    commands_ = std::make_unique<PlaylistCommands>(*player_);
    files_ = std::make_unique<PlaylistFiles>(*commands_);
    dups_ = std::make_unique<DupScan>(*commands_);

    connectPanel();
    connectLists();
    bindMenus();

    // Media keys and the desktop's controls; without a session bus this
    // stays silent.
    mprisControls_ = std::make_unique<PlayerMprisControls>(*player_, [w = w_.window] {
        w->show();
        w->raise();
        w->activateWindow();
    });
    mpris_ = std::make_unique<MprisService>(*mprisControls_);
    view_->setMediaControls(mprisControls_.get(), [this] { mpris_->update(); });
}

PlaybackController::~PlaybackController()
{
    // The window goes before the player; nothing may reach it afterwards.
    view_->setCoverWindow(nullptr);
    view_->setMediaControls(nullptr, {});
}

void PlaybackController::connectPanel()
{
    QWidget* frame = w_.playerFrame;
    const auto find = [frame](const char* name) { return frame->findChild<QToolButton*>(QLatin1String(name)); };
    Player* p = player_.get();
    QObject::connect(find("Previous_Track"), &QToolButton::clicked, frame, [p] { p->Previous_Track(); });
    QObject::connect(find("Play_Track"), &QToolButton::clicked, frame, [p] { p->Play_Track(); });
    QObject::connect(find("Pause_Track"), &QToolButton::clicked, frame, [p] { p->Pause_Track(); });
    QObject::connect(find("Stop_Track"), &QToolButton::clicked, frame, [p] { p->Stop_Track(); });
    QObject::connect(find("Next_Track"), &QToolButton::clicked, frame, [p] { p->Next_Track(); });

    auto* time = frame->findChild<cpvSlider*>(QStringLiteral("Time_Slider"));
    QObject::connect(time, &cpvSlider::Click, frame, [p, time] { p->timeSliderClick(time->Value()); });
    QObject::connect(time, &cpvSlider::ValueChanged, frame, [p, time] { p->timeSliderValueChanged(time->Value()); });
    QObject::connect(time, &cpvSlider::MouseDown, frame, [p] { p->timeSliderMouseDown(); });
    QObject::connect(time, &cpvSlider::MouseUp, frame, [p] { p->timeSliderMouseUp(); });
    for (const char* name : {"Volume_Slider", "Balance_Slider"}) {
        auto* slider = frame->findChild<cpvSlider*>(QLatin1String(name));
        const bool volume = QLatin1String(name) == QLatin1String("Volume_Slider");
        const auto changed = [p, slider, volume] {
            if (volume)
                p->volumeSliderChanged(slider->Value());
            else
                p->balanceSliderChanged(slider->Value());
        };
        QObject::connect(slider, &cpvSlider::Click, frame, changed);
        QObject::connect(slider, &cpvSlider::ValueChanged, frame, changed);
    }
    QObject::connect(frame->findChild<ClickLabel*>(QStringLiteral("mute")), &ClickLabel::clicked, frame,
                     [p] { p->muteClicked(); });
    QObject::connect(frame->findChild<QCheckBox*>(QStringLiteral("CheckLoop")), &QCheckBox::toggled, frame,
                     [p](bool on) { p->setLoop(on); });
    QObject::connect(frame->findChild<QCheckBox*>(QStringLiteral("CheckRandom")), &QCheckBox::toggled, frame,
                     [p](bool on) { p->setRandom(on); });
    QObject::connect(frame->findChild<ClickLabel*>(QStringLiteral("Cover_Play")), &ClickLabel::doubleClicked, frame,
                     [this] { openCoverWindow(); });
}

void PlaybackController::connectLists()
{
    QTreeView* list = w_.playList;
    PlaybackState* s = &play_;
    // A click or a key that moves the row selects the entry in the core.
    QObject::connect(list->selectionModel(), &QItemSelectionModel::currentRowChanged, list,
                     [s](const QModelIndex& current) { s->Play_List.select(current.row()); });
    QObject::connect(list, &QTreeView::doubleClicked, list,
                     [this](const QModelIndex& index) { player_->playListDoubleClick(index.row()); });

    QTreeView* library = w_.library;
    QObject::connect(library, &QTreeView::doubleClicked, library, [this] {
        commands_->libraryDoubleClick();
        app_.Menu_Refresh_Wanted = true;
    });
    // Library play, outside the playlist, from the list's own menu.
    library->setContextMenuPolicy(Qt::ActionsContextMenu);
    auto* playHere = new QAction(QStringLiteral("Play from &Library"), library);
    playHere->setObjectName(QStringLiteral("mnu_Library_Play"));
    QObject::connect(playHere, &QAction::triggered, library, [this] { playLibraryRow(); });
    library->addAction(playHere);
}

void PlaybackController::playLibraryRow()
{
    const TrackList& rows = player_->context().lib.MP3_List;
    const int row = rows.selected();
    if (row < 0)
        return;
    play_.Lib_Pos = row + 1;
    play_.Lib_File = rows.field(row, ColFolder) + QLatin1Char('/') + rows.field(row, ColFilename);
    player_->Play_Library_Track(play_.Lib_Pos, play_.Lib_File);
}

void PlaybackController::bindMenus()
{
    MenuBar& m = *w_.menus;
    PlaylistCommands* c = commands_.get();
    PlaylistFiles* f = files_.get();
    const std::pair<const char*, void (PlaylistCommands::*)()> commands[] = {
        {"mnu_Track_Play", &PlaylistCommands::mnu_Track_Play},
        {"mnu_Selection_Play", &PlaylistCommands::mnu_Selection_Play},
        {"mnu_Artist_Play", &PlaylistCommands::mnu_Artist_Play},
        {"mnu_Album_Play", &PlaylistCommands::mnu_Album_Play},
        {"mnu_All_Play", &PlaylistCommands::mnu_All_Play},
        {"mnu_Track_Add", &PlaylistCommands::mnu_Track_Add},
        {"mnu_Selection_Add", &PlaylistCommands::mnu_Selection_Add},
        {"mnu_Artist_Add", &PlaylistCommands::mnu_Artist_Add},
        {"mnu_Album_Add", &PlaylistCommands::mnu_Album_Add},
        {"mnu_Wav_Add", &PlaylistCommands::mnu_Wav_Add},
        {"mnu_Wma_Add", &PlaylistCommands::mnu_Wma_Add},
        {"mnu_PlayList_Clear", &PlaylistCommands::mnu_PlayList_Clear}};
    for (const auto& [name, handler] : commands)
        m.bind(QLatin1String(name), [c, h = handler] { (c->*h)(); });
    const std::pair<const char*, void (PlaylistFiles::*)()> files[] = {
        {"mnu_PlayList_Open", &PlaylistFiles::mnu_PlayList_Open},
        {"mnu_Playlist_Merge", &PlaylistFiles::mnu_Playlist_Merge},
        {"mnu_PlayList_Save", &PlaylistFiles::mnu_PlayList_Save},
        {"mnu_PlayList_Save_As", &PlaylistFiles::mnu_PlayList_Save_As},
        {"mnu_PlayList_Export", &PlaylistFiles::mnu_PlayList_Export}};
    for (const auto& [name, handler] : files)
        m.bind(QLatin1String(name), [f, h = handler] { (f->*h)(); });
    m.bind(QStringLiteral("mnu_Track_Delete"), [this] {
        const int row = play_.Play_List.selected();
        if (row >= 0)
            commands_->Playlist_Track_Delete(row + 1);
    });
    m.bind(QStringLiteral("mnu_Playlist_Duplicates"), [this] { openDuplicates(); });
}

void PlaybackController::openCoverWindow()
{
    if (!cover_) {
        QWidget* frame = w_.playerFrame;
        CoverWindowHooks hooks;
        hooks.openPlaylist = [f = files_.get()] { f->mnu_PlayList_Open(); };
        hooks.setLoopBox = [frame](bool on) { frame->findChild<QCheckBox*>(QStringLiteral("CheckLoop"))->setChecked(on); };
        hooks.setRandomBox = [frame](bool on) {
            frame->findChild<QCheckBox*>(QStringLiteral("CheckRandom"))->setChecked(on);
        };
        cover_ = std::make_unique<FrmPlayCover>(*player_, ui_, std::move(hooks), w_.window);
        view_->setCoverWindow(cover_.get());
    }
    QWidget* frame = w_.playerFrame;
    auto* volume = frame->findChild<cpvSlider*>(QStringLiteral("Volume_Slider"));
    cover_->open(view_->coverPict(), play_.Loop_On, play_.Random_On, volume->Value(), volume->toolTip());
}

void PlaybackController::openDuplicates()
{
    if (!dups_->start())
        return;
    FrmScanDups window(*dups_, w_.window);
    window.exec();
}

void PlaybackController::addTimerWork(MainTimerWork& work)
{
    Player* p = player_.get();
    work.colourCycle = [p] { p->colourCycle(); };
    work.marquee = [p] { p->marquee(); };
    work.playerPosition = [p] { p->positionWork(); };
}

void PlaybackController::release()
{
    if (cover_)
        cover_->close();
    player_->Stop_Track();
}

}  // namespace sonorit::ui
