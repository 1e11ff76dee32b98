#pragma once
// The menu bar of Base: the top-level menus by program name and a register of
// the entries by name, so that Update_Menus reaches the ones that exist.
#include <QHash>
#include <QList>
#include <functional>

#include "shell/menus.h"

class QAction;
class QMainWindow;
class QMenu;

namespace sonorit::ui {

class MenuBar {
public:
    explicit MenuBar(QMainWindow* window);

    QMenu* menu(const QString& name) const { return menus_.value(name); }
    // The top-level entries, which the window lock disables.
    QList<QAction*> topLevelActions() const;
    // Adds an entry named `name` (its object name) to a menu.
    QAction* addEntry(QMenu* menu, const QString& name, const QString& text, std::function<void()> handler);
    // Adds a submenu named `name`; its entry in `menu` carries the name too,
    // so that the menu states reach it.
    QMenu* addSubmenu(QMenu* menu, const QString& name, const QString& text);
    void apply(const MenuStates& states);
    // Runs after every entry's handler.
    void setAfterEntry(std::function<void()> after) { after_ = std::move(after); }

private:
    QHash<QString, QMenu*> menus_;
    QList<QMenu*> order_;
    QHash<QString, QAction*> entries_;
    std::function<void()> after_;
    bool running_ = false;  // an entry's handler is at work
};

}  // namespace sonorit::ui
