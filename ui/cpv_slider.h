#pragma once
// cpvSlider, the program's own slider: a knob picture moved along a rail by
// the mouse, mapped to a whole number from Min to Max. An invalid value is
// refused with error 380 and changes nothing.
#include <QColor>
#include <QPixmap>
#include <QWidget>

class QLabel;

namespace sonorit::ui {

class cpvSlider : public QWidget {
    Q_OBJECT
    Q_PROPERTY(QColor BackColor READ BackColor WRITE setBackColor)
    Q_PROPERTY(int Max READ Max WRITE setMax)
    Q_PROPERTY(int Min READ Min WRITE setMin)
    Q_PROPERTY(int Value READ Value WRITE setValue NOTIFY ValueChanged)
    Q_PROPERTY(int Orientation READ Orientation WRITE setOrientation)
    Q_PROPERTY(int RailStyle READ RailStyle WRITE setRailStyle)
    Q_PROPERTY(QPixmap SliderIcon READ SliderIcon WRITE setSliderIcon)
    Q_PROPERTY(QPixmap RailPicture READ RailPicture WRITE setRailPicture)
    Q_PROPERTY(bool ShowValueTip READ ShowValueTip WRITE setShowValueTip)

public:
    enum { Horizontal = 0, Vertical = 1 };
    static constexpr int kRailPicture = 99;           // RailStyle: the rail is RailPicture
    static constexpr int kInvalidPropertyValue = 380;  // the error of a refused value

    explicit cpvSlider(QWidget* parent = nullptr);

    // Enabled is the widget's own: a disabled slider ignores the mouse, and
    // its value can still be set by code.
    bool Enabled() const { return isEnabled(); }

    QColor BackColor() const { return back_; }
    void setBackColor(const QColor& colour);
    int Max() const { return max_; }
    int Min() const { return min_; }
    int Value() const { return value_; }
    // Each returns false, with LastError() 380, when the value is refused.
    bool setMax(int max);
    bool setMin(int min);
    bool setValue(int value);
    int LastError() const { return lastError_; }

    int Orientation() const { return orientation_; }
    void setOrientation(int orientation);
    int RailStyle() const { return railStyle_; }
    void setRailStyle(int style);
    QPixmap SliderIcon() const { return knob_; }
    void setSliderIcon(const QPixmap& icon);
    QPixmap RailPicture() const { return railPicture_; }
    void setRailPicture(const QPixmap& picture);
    bool ShowValueTip() const { return showTip_; }
    void setShowValueTip(bool show) { showTip_ = show; }
    // What follows the number in the value tip, "%" for a volume.
    void setTipSuffix(const QString& suffix) { tipSuffix_ = suffix; }
    QString tipText() const { return QString::number(value_) + tipSuffix_; }
    bool dragging() const { return dragging_; }

    // Knob place along the rail for a value, and the value of a knob place,
    // both in pixels from the rail's start (the left, or the top).
    int knobPosition(int value) const;
    int valueAt(int knobPosition) const;

    QSize sizeHint() const override;

signals:
    void Click();
    void ArrivedFirst();
    void ArrivedLast();
    void ValueChanged();
    void MouseDown(int button);
    void MouseUp(int button);

protected:
    void paintEvent(QPaintEvent*) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent*) override;

private:
    bool horizontal() const { return orientation_ == Horizontal; }
    int railStart() const;
    int railLength() const;
    int knobLength() const;
    int travel() const { return railLength() - knobLength(); }
    int along(const QPoint& p) const { return horizontal() ? p.x() : p.y(); }
    QRect knobRect() const;
    void dragTo(int pointer);
    void showTip();
    bool refuse();

    QColor back_;
    int max_ = 10;
    int min_ = 0;
    int value_ = 0;
    int orientation_ = Vertical;
    int railStyle_ = 0;
    QPixmap knob_;
    bool ownKnob_ = true;  // the built-in knob turns with the orientation
    QPixmap railPicture_;
    bool showTip_ = true;
    QString tipSuffix_;
    int lastError_ = 0;
    int knobPos_ = 0;
    bool dragging_ = false;
    int grab_ = 0;
    QLabel* tip_;
};

}  // namespace sonorit::ui
