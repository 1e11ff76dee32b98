#pragma once
// The controls of the file player in Player_Frame: the five buttons, the
// time, volume and balance sliders, the mute picture, loop and random, the
// marquee `song`, `Timer_Text`, `lblLibPlay`, the colour bars `Picture2` and
// the cover `Cover_Play`. Built here, driven by the playback controller.
#include <QLabel>
#include <QPixmap>
#include <array>

class QCheckBox;
class QGroupBox;
class QToolButton;

namespace sonorit::ui {

class cpvSlider;

// A picture that tells of clicks, as the original's picture boxes did.
class ClickLabel : public QLabel {
    Q_OBJECT
public:
    using QLabel::QLabel;
signals:
    void clicked();
    void doubleClicked();

protected:
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
};

struct PlayerPanel {
    QToolButton* previous = nullptr;
    QToolButton* play = nullptr;
    QToolButton* pause = nullptr;
    QToolButton* stop = nullptr;
    QToolButton* next = nullptr;
    cpvSlider* time = nullptr;     // Time_Slider
    cpvSlider* volume = nullptr;   // Volume_Slider, 0..100
    cpvSlider* balance = nullptr;  // Balance_Slider, -50..50
    ClickLabel* mute = nullptr;
    QCheckBox* loop = nullptr;     // CheckLoop
    QCheckBox* random = nullptr;   // CheckRandom
    QLabel* song = nullptr;
    QLabel* timerText = nullptr;   // Timer_Text
    QLabel* libPlay = nullptr;     // lblLibPlay
    ClickLabel* cover = nullptr;   // Cover_Play
    std::array<QWidget*, 4> bars{};  // Picture2(0..3)
    QPixmap sound, nosound;        // the two pictures of `mute`
};

PlayerPanel Build_Player_Panel(QGroupBox* frame);

// The built-in picture of a track without one, 200 x 200.
QPixmap Default_Cover();
// A JPEG scaled into a picture box, sharp on high-density screens; the
// built-in picture when the file is none or cannot be loaded.
QPixmap Fitted_Cover(const QString& file, const QWidget* box);

}  // namespace sonorit::ui
