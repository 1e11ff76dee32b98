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
    locked_ = locked;
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

void WindowShield::showList() { list_->setVisible(!shielded_ && !listHidden_); }

void WindowShield::shield()
{
    shielded_ = true;
    shield_->show();
    progress_->show();
    list_->setEnabled(false);
    showList();
}

void WindowShield::unshield()
{
    shielded_ = false;
    showList();
    list_->setEnabled(true);
    progress_->hide();
    shield_->hide();
}

void WindowShield::setListHidden(bool hidden)
{
    listHidden_ = hidden;
    showList();
}

}  // namespace sonorit::ui
