#pragma once
// The shielding of the main window during long operations: the lock disables
// the top-level menus and the panels, the shield covers the library list with
// LibShield and the progress panel.
#include <QList>

class QAction;
class QWidget;

namespace sonorit::ui {

class ProgressPanel;

class WindowShield {
public:
    // `menus` are the top-level menu entries; `panels` the controls the lock
    // disables; `list` is MP3_List, `shield` LibShield.
    WindowShield(QList<QAction*> menus, QList<QWidget*> panels, QWidget* list, QWidget* shield, ProgressPanel* progress);

    void lock();
    bool locked() const { return locked_; }
    void unlock();
    void showProgress();
    void shield();
    void unshield();
    // The core hides MP3_List during bulk work; it shows only when neither
    // that nor the shield keeps it hidden.
    void setListHidden(bool hidden);

private:
    void setLocked(bool locked);
    void showList();

    QList<QAction*> menus_;
    QList<QWidget*> panels_;
    QWidget* list_;
    QWidget* shield_;
    ProgressPanel* progress_;
    bool shielded_ = false;
    bool listHidden_ = false;
    bool locked_ = false;
};

}  // namespace sonorit::ui
