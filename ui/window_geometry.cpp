#include "window_geometry.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

#include "shell/settings_store.h"

namespace sonorit::ui {

namespace {

const QString kSection = QStringLiteral("Window");
// What a window manager's frame and title bar may add around the window's
// own size, which is all that can be set before the window is shown.
constexpr int kFrameWidth = 16;
constexpr int kFrameHeight = 48;

QRect availableFor(const QWidget* window)
{
    QScreen* screen = window->screen() ? window->screen() : QGuiApplication::primaryScreen();
    return screen ? screen->availableGeometry() : QRect(0, 0, 1024, 768);
}

}  // namespace

QSize Fit_Minimum_Size(QSize wanted, const QRect& available)
{
    return wanted.boundedTo(available.size());
}

QRect Fit_Window_Rect(QRect remembered, const QRect& available)
{
    if (remembered.width() <= 0 || remembered.height() <= 0 || available.isEmpty())
        return {};
    remembered.setSize(remembered.size().boundedTo(available.size()));
    // A window left on a screen that is gone comes back onto this one.
    if (remembered.right() > available.right())
        remembered.moveRight(available.right());
    if (remembered.bottom() > available.bottom())
        remembered.moveBottom(available.bottom());
    if (remembered.left() < available.left())
        remembered.moveLeft(available.left());
    if (remembered.top() < available.top())
        remembered.moveTop(available.top());
    return remembered;
}

void WindowGeometry::restore(QWidget* window, QSize wantedMinimum, QSize fallback) const
{
    const QRect available = availableFor(window).adjusted(0, 0, -kFrameWidth, -kFrameHeight);
    window->setMinimumSize(Fit_Minimum_Size(wantedMinimum, available));
    const auto number = [this](const char* key) {
        return settings_.GetSetting(kSection, QLatin1String(key), QString()).toInt();
    };
    QRect rect = Fit_Window_Rect(QRect(number("Left"), number("Top"), number("Width"), number("Height")), available);
    if (rect.isEmpty()) {
        rect = QRect(QPoint(), fallback.boundedTo(available.size()));
        rect.moveCenter(available.center());
    }
    window->resize(rect.size());
    window->move(rect.topLeft());
    if (settings_.GetSetting(kSection, QStringLiteral("Maximized"), QStringLiteral("False")) == QLatin1String("True"))
        window->setWindowState(window->windowState() | Qt::WindowMaximized);
}

void WindowGeometry::save(const QWidget* window) const
{
    // The normal rectangle, so that a maximised window comes back with the
    // size it had before.
    const QRect r = window->isMaximized() ? window->normalGeometry() : window->geometry();
    const QRect frame = window->frameGeometry();
    const QPoint topLeft = window->isMaximized() ? r.topLeft() : frame.topLeft();
    const std::pair<const char*, int> values[] = {
        {"Left", topLeft.x()}, {"Top", topLeft.y()}, {"Width", r.width()}, {"Height", r.height()}};
    for (const auto& [key, value] : values) {
        const QString text = QString::number(value);
        if (settings_.GetSetting(kSection, QLatin1String(key), QString()) != text)
            settings_.SaveSetting(kSection, QLatin1String(key), text);
    }
    const QString maximized = window->isMaximized() ? QStringLiteral("True") : QStringLiteral("False");
    if (settings_.GetSetting(kSection, QStringLiteral("Maximized"), QString()) != maximized)
        settings_.SaveSetting(kSection, QStringLiteral("Maximized"), maximized);
}

}  // namespace sonorit::ui
