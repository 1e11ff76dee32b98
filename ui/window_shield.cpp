#include "window_shield.h"

#include <QAction>
#include <QWidget>

#include "progress_panel.h"

namespace sonorit::ui {

WindowShield::WindowShield(QList<QAction*> menus, QList<QWidget*> panels, QWidget* list, QWidget* shield,
                           ProgressPanel* progress)
    : menus_(std::move(menus)), panels_(std::move(panels)), list_(list), shield_(shield), progress_(progress)
{
}

void WindowShield::setLocked(bool locked)
{
    for (QAction* menu : menus_)
        menu->setEnabled(!locked);
    for (QWidget* panel : panels_)
        panel->setEnabled(!locked);
}

void WindowShield::lock() { setLocked(true); }
void WindowShield::unlock() { setLocked(false); }

void WindowShield::showProgress()
{
    progress_->clearTexts();
    progress_->setRange(0, 1);
    progress_->setValue(0);
}

void WindowShield::shield()
{
    shield_->show();
    progress_->show();
    list_->setEnabled(false);
    list_->hide();
}

void WindowShield::unshield()
{
    list_->show();
    list_->setEnabled(true);
    progress_->hide();
    shield_->hide();
}

}  // namespace sonorit::ui
