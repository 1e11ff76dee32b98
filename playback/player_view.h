#pragma once
// What the player tells the window. Every method does nothing by default, so
// the command-line front end and tests override only what they watch.
#include <QString>

#include "playback/playback_state.h"

namespace sonorit {

// What a starting track is, for the window's panel and the desktop's media
// controls.
struct TrackStart {
    int position = 0;  // PlayList_Pos, or Lib_Pos in library play
    int entry = 0;     // the playlist entry, 0 in library play
    QString source;    // Now_Source
    QString file;      // Now_File: the copy, or the wav/wma file itself
    QString artist, album, title;
    int seconds = 0;   // Time_Slider.Max
    bool library = false;
};

class PlayerView {
public:
    virtual ~PlayerView() = default;

    // The player panel.
    virtual void showSong(const QString& /*text*/) {}        // `song`, the marquee
    virtual void showTimerText(const QString& /*text*/) {}   // `Timer_Text`
    virtual void setTimeSliderMax(int /*max*/) {}
    virtual void setTimeSliderValue(int /*value*/) {}
    virtual void setTimeSliderTip(const QString& /*tip*/) {}
    virtual void setVolumeSlider(int /*value*/, const QString& /*tip*/) {}       // main window's
    virtual void setCoverVolumeSlider(int /*value*/, const QString& /*tip*/) {}  // cover window's
    virtual void setBalanceTip(const QString& /*tip*/) {}
    virtual void showMute(bool /*muted*/) {}  // nosound picture when muted
    virtual void setLibPlayVisible(bool /*visible*/) {}  // `lblLibPlay`
    virtual void setCycleColours(Rgb /*fore*/, Rgb /*inverse*/) {}  // Picture2(0, 1) and (2, 3)

    // Play_List rows (0-based), also told by PlayListRows itself.
    virtual void playListRowAppended(int /*row*/) {}
    virtual void playListRowRemoved(int /*row*/) {}
    virtual void playListRowChanged(int /*row*/) {}
    virtual void playListCleared() {}
    virtual void playListReset() {}                 // after a bulk of changes
    virtual void playListRowSelected(int /*row*/) {}  // select and make visible (PlayFind)
    // While a playlist file loads: PlayShield over the hidden, disabled list,
    // the mnu_PlayList menu disabled.
    virtual void setPlayListShielded(bool /*shielded*/) {}
    virtual void setExportEnabled(bool /*enabled*/) {}

    // Covers. An empty path means the built-in default picture. The window
    // loads the JPEG at 200 x 200 into Cover_Pict and shows it in Cover_Play
    // (or Cover_Tag); a file it cannot load leaves the picture as it was.
    virtual void showPlayCover(const QString& /*jpegPath*/) {}
    virtual void showTagCover(const QString& /*jpegPath*/) {}

    // The large cover window, told only while it is open.
    virtual void setImageSaveEnabled(bool /*enabled*/) {}
    virtual void coverWindowTakePlayPicture() {}  // Image1 = Cover_Play's picture
    virtual void setCoverWindowCaption(const QString& /*caption*/) {}
    // mnu_Lyrics enabled with lyrics; Timer2 and Label1(0..3) follow the
    // Lyrics_On tick; with lyrics the window fits its font (fitLyricFont).
    virtual void prepareCoverWindowLyrics(bool /*hasLyrics*/) {}
    virtual void setCoverWindowRandomTick(bool /*ticked*/) {}
    virtual void setCoverWindowLoopTick(bool /*ticked*/) {}

    // The rest of the main window.
    virtual void setTagPanelsEnabled(bool /*enabled*/) {}  // FrameTag1, FrameTag2
    virtual void menuRefreshWanted() {}  // AppState::Menu_Refresh_Wanted was set
    virtual void beep() {}

    // Events for the command line's play verb and the desktop's media
    // controls.
    virtual void trackStarted(const TrackStart& /*start*/) {}
    virtual void trackSkipped(int /*entry*/) {}
    virtual void trackEnded(int /*entry*/) {}  // the position poll found the end
    virtual void positionPolled(double /*seconds*/) {}
    virtual void playbackStopped() {}
    virtual void playbackPaused(bool /*paused*/) {}
};

}  // namespace sonorit
