#include "cpv_slider.h"

#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <cmath>

namespace sonorit::ui {

namespace {

constexpr int kRailInset = 4;      // the rail's distance from the control's ends
constexpr int kRailThickness = 4;

// The built-in knob: a small raised grip, lying across the rail.
QPixmap builtInKnob(bool horizontal)
{
    const QSize size = horizontal ? QSize(11, 21) : QSize(21, 11);
    QPixmap knob(size);
    knob.fill(Qt::transparent);
    QPainter p(&knob);
    p.setRenderHint(QPainter::Antialiasing);
    QLinearGradient ground(0, 0, size.width(), size.height());
    ground.setColorAt(0, QColor(250, 250, 250));
    ground.setColorAt(1, QColor(170, 170, 175));
    p.setBrush(ground);
    p.setPen(QColor(90, 90, 95));
    p.drawRoundedRect(QRectF(0.5, 0.5, size.width() - 1, size.height() - 1), 2, 2);
    p.setPen(QColor(120, 120, 125));
    if (horizontal)
        p.drawLine(QPointF(5.5, 5), QPointF(5.5, size.height() - 5));
    else
        p.drawLine(QPointF(5, 5.5), QPointF(size.width() - 5, 5.5));
    return knob;
}

// The edge kinds of the rail: bits for a raised or sunken outer and inner line.
void drawEdge(QPainter& p, QRect r, int style, const QPalette& palette)
{
    const QColor light = palette.color(QPalette::Light), dark = palette.color(QPalette::Dark),
                 shadow = palette.color(QPalette::Shadow), mid = palette.color(QPalette::Midlight);
    const auto frame = [&p](QRect box, const QColor& topLeft, const QColor& bottomRight) {
        p.setPen(topLeft);
        p.drawLine(box.topLeft(), box.topRight());
        p.drawLine(box.topLeft(), box.bottomLeft());
        p.setPen(bottomRight);
        p.drawLine(box.bottomLeft(), box.bottomRight());
        p.drawLine(box.topRight(), box.bottomRight());
    };
    if (style & 1)
        frame(r, mid, shadow);
    else if (style & 2)
        frame(r, dark, light);
    r.adjust(1, 1, -1, -1);
    if (style & 4)
        frame(r, light, dark);
    else if (style & 8)
        frame(r, shadow, mid);
}

}  // namespace

cpvSlider::cpvSlider(QWidget* parent)
    : QWidget(parent), back_(palette().color(QPalette::Button)), knob_(builtInKnob(false)), tip_(new QLabel(this))
{
    tip_->setObjectName(QStringLiteral("ValueTip"));
    tip_->setWindowFlags(Qt::ToolTip);
    tip_->setMargin(2);
    tip_->setFrameShape(QFrame::Box);
    tip_->setAutoFillBackground(true);
    tip_->setBackgroundRole(QPalette::ToolTipBase);
    tip_->setForegroundRole(QPalette::ToolTipText);
    tip_->hide();
}

bool cpvSlider::refuse()
{
    lastError_ = kInvalidPropertyValue;
    return false;
}

void cpvSlider::setBackColor(const QColor& colour)
{
    back_ = colour;
    update();
}

bool cpvSlider::setMax(int max)
{
    if (max <= min_)
        return refuse();
    max_ = max;
    knobPos_ = knobPosition(value_);
    update();
    return true;
}

bool cpvSlider::setMin(int min)
{
    if (min >= max_)
        return refuse();
    min_ = min;
    knobPos_ = knobPosition(value_);
    update();
    return true;
}

bool cpvSlider::setValue(int value)
{
    if (value < min_ || value > max_)
        return refuse();
    if (value == value_)
        return true;
    // While dragging the knob follows the pointer, not the value.
    if (!dragging_)
        knobPos_ = knobPosition(value);
    update();
    value_ = value;
    if (tip_->isVisible())
        showTip();
    emit ValueChanged();
    if (value_ == max_)
        emit ArrivedLast();
    if (value_ == min_)
        emit ArrivedFirst();
    return true;
}

void cpvSlider::setOrientation(int orientation)
{
    orientation_ = orientation == Horizontal ? Horizontal : Vertical;
    if (ownKnob_)
        knob_ = builtInKnob(horizontal());
    knobPos_ = knobPosition(value_);
    updateGeometry();
    update();
}

void cpvSlider::setRailStyle(int style)
{
    railStyle_ = style;
    update();
}

void cpvSlider::setSliderIcon(const QPixmap& icon)
{
    ownKnob_ = icon.isNull();
    knob_ = ownKnob_ ? builtInKnob(horizontal()) : icon;
    knobPos_ = knobPosition(value_);
    update();
}

void cpvSlider::setRailPicture(const QPixmap& picture)
{
    railPicture_ = picture;
    update();
}

int cpvSlider::railStart() const { return kRailInset; }
int cpvSlider::railLength() const { return std::max(0, (horizontal() ? width() : height()) - 2 * kRailInset); }
int cpvSlider::knobLength() const { return horizontal() ? knob_.width() : knob_.height(); }

int cpvSlider::knobPosition(int value) const
{
    const int span = max_ - min_;
    if (travel() <= 0 || span <= 0)
        return 0;
    const int fromNear = int(std::lround(double(travel()) * (value - min_) / span));
    // Vertically the far end, Max, is at the top.
    return std::clamp(horizontal() ? fromNear : travel() - fromNear, 0, travel());
}

int cpvSlider::valueAt(int knobPosition) const
{
    if (travel() <= 0)
        return min_;
    const int pos = std::clamp(knobPosition, 0, travel());
    const int distance = horizontal() ? pos : travel() - pos;
    return int(std::lround(double(distance) / travel() * (max_ - min_))) + min_;
}

QRect cpvSlider::knobRect() const
{
    const int start = railStart() + knobPos_;
    if (horizontal())
        return {start, (height() - knob_.height()) / 2, knob_.width(), knob_.height()};
    return {(width() - knob_.width()) / 2, start, knob_.width(), knob_.height()};
}

QSize cpvSlider::sizeHint() const
{
    const int across = std::max(horizontal() ? knob_.height() : knob_.width(), 16) + 4;
    return horizontal() ? QSize(120, across) : QSize(across, 120);
}

void cpvSlider::resizeEvent(QResizeEvent*)
{
    if (!dragging_)
        knobPos_ = knobPosition(value_);
}

void cpvSlider::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    p.fillRect(rect(), back_);
    const QRect rail = horizontal()
                           ? QRect(railStart(), (height() - kRailThickness) / 2, railLength(), kRailThickness)
                           : QRect((width() - kRailThickness) / 2, railStart(), kRailThickness, railLength());
    if (railStyle_ == kRailPicture) {
        if (!railPicture_.isNull()) {
            // The picture runs along the rail, centred across it.
            const QSize size = horizontal() ? QSize(railLength(), railPicture_.height())
                                            : QSize(railPicture_.width(), railLength());
            QRect target(QPoint(), size);
            target.moveCenter(rail.center());
            p.drawPixmap(target, railPicture_);
        }
    } else {
        drawEdge(p, rail, railStyle_, palette());
    }
    p.drawPixmap(knobRect().topLeft(), knob_);
}

void cpvSlider::dragTo(int pointer)
{
    knobPos_ = std::clamp(pointer - railStart() - grab_, 0, std::max(0, travel()));
    update();
    setValue(valueAt(knobPos_));
}

void cpvSlider::showTip()
{
    tip_->setText(tipText());
    tip_->adjustSize();
    // Beside the control: right of a vertical one, above a horizontal one.
    const QRect box(mapToGlobal(QPoint(0, 0)), size());
    const QPoint at = horizontal() ? QPoint(box.left() + knobRect().center().x() - tip_->width() / 2,
                                            box.top() - tip_->height() - 2)
                                   : QPoint(box.right() + 4, box.top() + knobRect().center().y() - tip_->height() / 2);
    tip_->move(at);
    tip_->show();
}

void cpvSlider::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton) {
        dragging_ = true;
        const QRect knob = knobRect();
        const int pointer = along(event->position().toPoint());
        if (knob.contains(event->position().toPoint())) {
            grab_ = pointer - along(knob.topLeft());
        } else {
            // A press beside the knob makes it jump there.
            grab_ = knobLength() / 2;
            dragTo(pointer);
        }
        if (showTip_)
            showTip();
    }
    emit MouseDown(int(event->button()));
}

void cpvSlider::mouseMoveEvent(QMouseEvent* event)
{
    if (dragging_)
        dragTo(along(event->position().toPoint()));
}

void cpvSlider::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint()))
        emit Click();
    if (dragging_)
        emit MouseUp(int(event->button()));
    dragging_ = false;
    tip_->hide();
    knobPos_ = knobPosition(value_);
    update();
}

}  // namespace sonorit::ui
