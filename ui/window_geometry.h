#pragma once
// The main window on the user's screen: a minimum size that never exceeds
// the screen's available room (large scale factors make small screens), and
// the size and place of the last session, kept in the settings.
#include <QRect>
#include <QSize>

class QWidget;

namespace sonorit {
class SettingsStore;
}

namespace sonorit::ui {

// The wanted minimum, cut to what the screen offers.
QSize Fit_Minimum_Size(QSize wanted, const QRect& available);
// The remembered rectangle moved and cut so that it lies on `available`;
// an empty rectangle when nothing usable was remembered.
QRect Fit_Window_Rect(QRect remembered, const QRect& available);

class WindowGeometry {
public:
    explicit WindowGeometry(const SettingsStore& settings) : settings_(settings) {}

    // Applies the minimum and the remembered size and place, or `fallback`
    // centred on the screen the first time.
    void restore(QWidget* window, QSize wantedMinimum, QSize fallback) const;
    void save(const QWidget* window) const;

private:
    const SettingsStore& settings_;
};

}  // namespace sonorit::ui
