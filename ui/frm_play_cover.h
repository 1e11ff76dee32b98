#pragma once
// frmPlayCover: the running track's picture as large as the user likes,
// always on top, with a player menu, an optional volume slider and two lines
// of synced lyrics over the lower part of the picture.
#include <QMainWindow>
#include <array>

#include "playback/lyric_clock.h"

class QAction;
class QLabel;
class QTimer;

namespace sonorit {
class Player;
struct AppState;
class UiPort;
}  // namespace sonorit

namespace sonorit::ui {

class cpvSlider;

// What the window does in the main window: the playlist command and the two
// check boxes, whose handlers do the work.
struct CoverWindowHooks {
    std::function<void()> openPlaylist;
    std::function<void(bool)> setLoopBox;
    std::function<void(bool)> setRandomBox;
};

class FrmPlayCover : public QMainWindow {
    Q_OBJECT
public:
    FrmPlayCover(Player& player, UiPort& ui, CoverWindowHooks hooks, QWidget* mainWindow);

    // Window load: the picture of Cover_Play, the ticks and the volume of the
    // main window, the lyrics of the running track; centred on the main window.
    void open(const QPixmap& coverPlay, bool loop, bool random, int volume, const QString& volumeTip);

    void takePicture(const QPixmap& picture);
    void setCaption(const QString& caption);
    void prepareLyrics(bool hasLyrics);
    void setImageSaveEnabled(bool enabled);
    void setRandomTick(bool ticked);
    void setLoopTick(bool ticked);
    void setVolume(int value, const QString& tip);
    // One tick of the lyric clock (Timer2), also for tests.
    void lyricTick();

protected:
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void buildMenus(CoverWindowHooks hooks);
    void fitLyricFont();
    void showLyricLabels(bool shown);
    void saveImage();

    Player& player_;
    UiPort& ui_;
    QWidget* mainWindow_;
    QLabel* image_;                  // Image1
    std::array<QLabel*, 4> lines_{};  // Label1(0..3)
    cpvSlider* volume_;
    QLabel* volumeLabel_;            // lblVolume
    QTimer* captionTimer_;           // Timer1
    QTimer* lyricTimer_;             // Timer2
    QAction* imageSave_ = nullptr;
    QAction* random_ = nullptr;
    QAction* loop_ = nullptr;
    QAction* volumeShow_ = nullptr;
    QAction* lyricsMenu_ = nullptr;
    QAction* lyricsOn_ = nullptr;
    LyricClock clock_;
    bool hasLyrics_ = false;
};

}  // namespace sonorit::ui
