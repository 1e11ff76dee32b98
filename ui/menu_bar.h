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
    // Adds an entry whose feature is not built: it stays disabled until a
    // handler is bound to it.
    QAction* addPlaceholder(QMenu* menu, const QString& name, const QString& text);
    // Gives a placeholder its handler; from then on the menu states reach it.
    QAction* bind(const QString& name, std::function<void()> handler);
    // Adds a submenu named `name`; its entry in `menu` carries the name too,
    // so that the menu states reach it.
    QMenu* addSubmenu(QMenu* menu, const QString& name, const QString& text);
    // A submenu is enabled only when one of its entries has a handler.
    void apply(const MenuStates& states);
    // An entry's handler is at work (it may serve the event queue meanwhile).
    bool busy() const { return running_; }
    // Runs after every entry's handler.
    void setAfterEntry(std::function<void()> after) { after_ = std::move(after); }

private:
    void connectHandler(QAction* action, QMenu* owner, std::function<void()> handler);
    bool hasHandlers(const QMenu* menu) const;

    QHash<QString, QMenu*> menus_;
    QList<QMenu*> order_;
    QHash<QString, QAction*> entries_;
    QHash<QString, QAction*> placeholders_;
    QHash<QString, QMenu*> submenus_;
    std::function<void()> after_;
    bool running_ = false;  // an entry's handler is at work
};

}  // namespace sonorit::ui
