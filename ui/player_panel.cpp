#include "player_panel.h"

#include <QImageReader>

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QImageReader>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>

#include "cpv_slider.h"
#include "program_icon.h"

namespace sonorit::ui {

namespace {

constexpr int kCoverSize = 96;

QToolButton* button(const char* name, QStyle::StandardPixmap icon, const char* tip)
{
    auto* b = new QToolButton;
    b->setObjectName(QLatin1String(name));
    b->setIcon(b->style()->standardIcon(icon));
    b->setToolTip(QLatin1String(tip));
    b->setAutoRaise(true);
    b->setIconSize(QSize(22, 22));
    return b;
}

cpvSlider* slider(const char* name, int orientation, int min, int max, int value)
{
    auto* s = new cpvSlider;
    s->setObjectName(QLatin1String(name));
    s->setOrientation(orientation);
    s->setMax(max);
    s->setMin(min);
    s->setValue(value);
    s->setRailStyle(10);  // sunken
    return s;
}

QLabel* label(const char* name)
{
    auto* l = new QLabel;
    l->setObjectName(QLatin1String(name));
    return l;
}

}  // namespace

void ClickLabel::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint()))
        emit clicked();
    QLabel::mouseReleaseEvent(event);
}

void ClickLabel::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        emit doubleClicked();
    QLabel::mouseDoubleClickEvent(event);
}

QPixmap Default_Cover()
{
    QPixmap picture(200, 200);
    QPainter p(&picture);
    QLinearGradient ground(0, 0, 0, 200);
    ground.setColorAt(0, QColor(70, 76, 86));
    ground.setColorAt(1, QColor(28, 30, 36));
    p.fillRect(picture.rect(), ground);
    p.setOpacity(0.85);
    p.drawPixmap(QRect(40, 40, 120, 120), Program_Icon().pixmap(120, 120));
    return picture;
}

QPixmap Fitted_Cover(const QString& file, const QWidget* box)
{
    const qreal ratio = box->devicePixelRatioF();
    const QSize room = box->contentsRect().size() * ratio;
    QPixmap picture;
    if (!file.isEmpty()) {
        QImageReader reader(file);
        reader.setAutoTransform(true);
        if (const QSize size = reader.size(); size.isValid())
            reader.setScaledSize(size.scaled(room, Qt::KeepAspectRatio));
        const QImage image = reader.read();
        if (!image.isNull())
            picture = QPixmap::fromImage(image);
    }
    if (picture.isNull())
        picture = Default_Cover().scaled(room, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    picture.setDevicePixelRatio(ratio);
    return picture;
}

PlayerPanel Build_Player_Panel(QGroupBox* frame)
{
    PlayerPanel w;
    w.previous = button("Previous_Track", QStyle::SP_MediaSkipBackward, "Previous");
    w.play = button("Play_Track", QStyle::SP_MediaPlay, "Play");
    w.pause = button("Pause_Track", QStyle::SP_MediaPause, "Pause");
    w.stop = button("Stop_Track", QStyle::SP_MediaStop, "Stop");
    w.next = button("Next_Track", QStyle::SP_MediaSkipForward, "Next");
    w.time = slider("Time_Slider", cpvSlider::Horizontal, 0, 10, 0);
    w.volume = slider("Volume_Slider", cpvSlider::Horizontal, 0, 100, 80);
    w.volume->setTipSuffix(QStringLiteral("%"));
    w.volume->setToolTip(QStringLiteral("80%"));
    w.balance = slider("Balance_Slider", cpvSlider::Horizontal, -50, 50, 0);
    w.balance->setToolTip(QStringLiteral("0"));

    w.sound = frame->style()->standardIcon(QStyle::SP_MediaVolume).pixmap(20, 20);
    w.nosound = frame->style()->standardIcon(QStyle::SP_MediaVolumeMuted).pixmap(20, 20);
    w.mute = new ClickLabel;
    w.mute->setObjectName(QStringLiteral("mute"));
    w.mute->setPixmap(w.sound);
    w.mute->setToolTip(QStringLiteral("Mute"));

    w.loop = new QCheckBox(QStringLiteral("Loop"));
    w.loop->setObjectName(QStringLiteral("CheckLoop"));
    w.random = new QCheckBox(QStringLiteral("Random"));
    w.random->setObjectName(QStringLiteral("CheckRandom"));

    w.song = label("song");
    QFont bold = w.song->font();
    bold.setBold(true);
    w.song->setFont(bold);
    w.song->setMinimumWidth(60);
    w.song->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    w.timerText = label("Timer_Text");
    w.libPlay = label("lblLibPlay");
    w.libPlay->setText(QStringLiteral("Library Play"));
    w.libPlay->hide();

    w.cover = new ClickLabel;
    w.cover->setObjectName(QStringLiteral("Cover_Play"));
    w.cover->setFixedSize(kCoverSize, kCoverSize);
    w.cover->setScaledContents(true);
    w.cover->setPixmap(Default_Cover());
    w.cover->setToolTip(QStringLiteral("Double click for the large cover"));

    // Picture2: two bars in the cycling colour beside the marquee, two in its
    // inverse.
    auto* bars = new QHBoxLayout;
    bars->setSpacing(2);
    for (size_t i = 0; i < w.bars.size(); ++i) {
        auto* bar = new QWidget;
        bar->setObjectName(QStringLiteral("Picture2_%1").arg(i));
        bar->setFixedSize(12, 4);
        bar->setAutoFillBackground(true);
        w.bars[i] = bar;
        bars->addWidget(bar);
    }
    bars->addStretch();

    auto* info = new QVBoxLayout;
    info->setSpacing(2);
    info->addWidget(w.song);
    info->addLayout(bars);
    info->addWidget(w.timerText);
    info->addWidget(w.libPlay);
    info->addStretch();

    auto* top = new QHBoxLayout;
    top->addWidget(w.cover);
    top->addLayout(info, 1);

    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(0);
    for (QToolButton* b : {w.previous, w.play, w.pause, w.stop, w.next})
        buttons->addWidget(b);
    buttons->addStretch();
    buttons->addWidget(w.loop);
    buttons->addWidget(w.random);

    auto* levels = new QGridLayout;
    levels->addWidget(w.mute, 0, 0);
    levels->addWidget(w.volume, 0, 1);
    auto* balanceLabel = new QLabel(QStringLiteral("L/R"));
    levels->addWidget(balanceLabel, 0, 2);
    levels->addWidget(w.balance, 0, 3);
    levels->setColumnStretch(1, 3);
    levels->setColumnStretch(3, 2);

    auto* column = new QVBoxLayout(frame);
    column->setContentsMargins(6, 4, 6, 4);
    column->setSpacing(2);
    column->addLayout(top);
    column->addWidget(w.time);
    column->addLayout(buttons);
    column->addLayout(levels);
    return w;
}

}  // namespace sonorit::ui
