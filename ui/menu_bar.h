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
    void apply(const MenuStates& states);

private:
    QHash<QString, QMenu*> menus_;
    QList<QMenu*> order_;
    QHash<QString, QAction*> entries_;
};

}  // namespace sonorit::ui
