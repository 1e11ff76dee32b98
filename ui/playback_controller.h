#pragma once
// Playback in the window program: the core's player, playlist commands and
// files on a media graph, wired to the player panel, Play_List, the Tracks
// and PlayList menus, the main timer, the large cover window, the duplicate
// scan and the desktop's media controls.
#include <memory>

#include "playback/dup_scan.h"
#include "playback/playlist_files.h"
#include "shell/main_timer.h"

class QGroupBox;
class QTreeView;
class QWidget;

namespace sonorit {
class MprisService;
class PlayerMprisControls;
}

namespace sonorit::ui {

class FrmPlayCover;
class MenuBar;
class PlayListModel;
class QtPlayerView;

struct PlaybackWidgets {
    QWidget* window = nullptr;
    QGroupBox* playerFrame = nullptr;
    QTreeView* playList = nullptr;
    QWidget* playShield = nullptr;
    QTreeView* library = nullptr;  // MP3_List
    MenuBar* menus = nullptr;
};

class PlaybackController {
public:
    PlaybackController(AppState& app, LibraryState& lib, UiPort& ui, PlaybackWidgets widgets,
                       std::unique_ptr<MediaGraphFactory> graphs);
    ~PlaybackController();

    Player& player() { return *player_; }
    PlaybackState& state() { return play_; }
    PlaylistCommands& commands() { return *commands_; }
    PlaylistFiles& files() { return *files_; }
    // The large cover window, null until first opened.
    FrmPlayCover* coverWindow() { return cover_.get(); }
    void openCoverWindow();
    void openDuplicates();

    // The player's share of the main timer.
    void addTimerWork(MainTimerWork& work);
    // The exit sequence releases the graph.
    void release();

private:
    void connectPanel();
    void connectLists();
    void bindMenus();
    void playLibraryRow();

    AppState& app_;
    UiPort& ui_;
    PlaybackWidgets w_;
    std::unique_ptr<MediaGraphFactory> graphs_;
    PlaybackState play_;
    std::unique_ptr<PlayListModel> model_;
    std::unique_ptr<QtPlayerView> view_;
    std::unique_ptr<Player> player_;
    std::unique_ptr<PlaylistCommands> commands_;
    std::unique_ptr<PlaylistFiles> files_;
    std::unique_ptr<DupScan> dups_;
    std::unique_ptr<FrmPlayCover> cover_;
    std::unique_ptr<PlayerMprisControls> mprisControls_;
    std::unique_ptr<MprisService> mpris_;
};

}  // namespace sonorit::ui
