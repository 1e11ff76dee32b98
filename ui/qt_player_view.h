#pragma once
// The player's view in the window program: the player panel, Play_List, the
// covers, the large cover window while it is open, and the desktop's media
// controls, which are told whenever the player changes.
#include <QPixmap>
#include <functional>

#include "playback/player_view.h"
#include "player_panel.h"

class QAction;
class QTreeView;

namespace sonorit {
class PlayerMprisControls;
}

namespace sonorit::ui {

class FrmPlayCover;
class PlayListModel;

struct PlayerViewParts {
    PlayerPanel panel;
    QTreeView* playList = nullptr;
    QWidget* playShield = nullptr;
    QAction* playListMenu = nullptr;  // mnu_PlayList, disabled while a list loads
    QAction* exportEntry = nullptr;   // mnu_PlayList_Export
    PlayListModel* model = nullptr;
};

class QtPlayerView : public PlayerView {
public:
    explicit QtPlayerView(PlayerViewParts parts);

    void setCoverWindow(FrmPlayCover* window) { cover_ = window; }
    // The desktop's media controls hear of every start, cover and stop;
    // `changed` runs after each, and after a pause, to publish them.
    void setMediaControls(PlayerMprisControls* controls, std::function<void()> changed)
    {
        mpris_ = controls;
        changed_ = std::move(changed);
    }
    const QPixmap& coverPict() const { return coverPict_; }

    void showSong(const QString& text) override;
    void showTimerText(const QString& text) override;
    void setTimeSliderMax(int max) override;
    void setTimeSliderValue(int value) override;
    void setTimeSliderTip(const QString& tip) override;
    void setVolumeSlider(int value, const QString& tip) override;
    void setCoverVolumeSlider(int value, const QString& tip) override;
    void setBalanceTip(const QString& tip) override;
    void showMute(bool muted) override;
    void setLibPlayVisible(bool visible) override;
    void setCycleColours(Rgb fore, Rgb inverse) override;

    void playListRowAppended(int row) override;
    void playListRowRemoved(int row) override;
    void playListRowChanged(int row) override;
    void playListCleared() override;
    void playListReset() override;
    void playListRowSelected(int row) override;
    void setPlayListShielded(bool shielded) override;
    void setExportEnabled(bool enabled) override;

    void showPlayCover(const QString& jpegPath) override;

    void setImageSaveEnabled(bool enabled) override;
    void coverWindowTakePlayPicture() override;
    void setCoverWindowCaption(const QString& caption) override;
    void prepareCoverWindowLyrics(bool hasLyrics) override;
    void setCoverWindowRandomTick(bool ticked) override;
    void setCoverWindowLoopTick(bool ticked) override;

    void beep() override;
    void trackStarted(const TrackStart& start) override;
    void playbackStopped() override;
    void playbackPaused(bool paused) override;

private:
    void changed();

    PlayerViewParts p_;
    FrmPlayCover* cover_ = nullptr;
    QPixmap coverPict_;  // Cover_Pict
    QString coverPath_;  // the file it came from, "" for the built-in one
    PlayerMprisControls* mpris_ = nullptr;
    std::function<void()> changed_;
};

}  // namespace sonorit::ui
