#include "menu_bar.h"

#include <QMainWindow>
#include <QMenuBar>

namespace sonorit::ui {

MenuBar::MenuBar(QMainWindow* window)
{
    static const std::pair<const char*, const char*> topLevel[] = {
        {"mnu_Library", "&Library"}, {"mnu_Tracks", "&Tracks"}, {"mnu_convert", "&Convert"},
        {"mnu_PlayList", "&PlayList"}, {"mnu_Extra", "&Extra"},   {"mnu_help", "&Help"}};
    for (const auto& [name, text] : topLevel) {
        QMenu* menu = window->menuBar()->addMenu(QString::fromUtf8(text));
        menu->setObjectName(QLatin1String(name));
        menu->menuAction()->setObjectName(QLatin1String(name));
        menus_.insert(QLatin1String(name), menu);
        order_ << menu;
    }
}

QList<QAction*> MenuBar::topLevelActions() const
{
    QList<QAction*> actions;
    for (QMenu* menu : order_)
        actions << menu->menuAction();
    return actions;
}

QAction* MenuBar::addEntry(QMenu* menu, const QString& name, const QString& text, std::function<void()> handler)
{
    QAction* action = menu->addAction(text);
    action->setObjectName(name);
    connectHandler(action, menu, std::move(handler));
    entries_.insert(name, action);
    return action;
}

QAction* MenuBar::addPlaceholder(QMenu* menu, const QString& name, const QString& text)
{
    QAction* action = menu->addAction(text);
    action->setObjectName(name);
    action->setEnabled(false);
    placeholders_.insert(name, action);
    return action;
}

QAction* MenuBar::bind(const QString& name, std::function<void()> handler)
{
    QAction* action = placeholders_.take(name);
    if (!action)
        return nullptr;
    connectHandler(action, qobject_cast<QMenu*>(action->parent()), std::move(handler));
    action->setEnabled(true);
    entries_.insert(name, action);
    return action;
}

void MenuBar::connectHandler(QAction* action, QMenu* owner, std::function<void()> handler)
{
    QObject::connect(action, &QAction::triggered, owner, [this, handler = std::move(handler)] {
        // A long command serves the event queue now and then, and not every
        // one locks the menus meanwhile: an entry chosen during another's
        // work is ignored.
        if (running_)
            return;
        running_ = true;
        handler();
        running_ = false;
        if (after_)
            after_();
    });
}

QMenu* MenuBar::addSubmenu(QMenu* menu, const QString& name, const QString& text)
{
    QMenu* sub = menu->addMenu(text);
    sub->setObjectName(name);
    sub->menuAction()->setObjectName(name);
    entries_.insert(name, sub->menuAction());
    submenus_.insert(name, sub);
    return sub;
}

bool MenuBar::hasHandlers(const QMenu* menu) const
{
    for (QAction* action : menu->actions()) {
        if (action->menu() ? hasHandlers(action->menu()) : entries_.contains(action->objectName()))
            return true;
    }
    return false;
}

void MenuBar::apply(const MenuStates& states)
{
    for (const auto& [name, enabled] : states.enabled) {
        if (QAction* action = entries_.value(name)) {
            const QMenu* sub = submenus_.value(name);
            action->setEnabled(enabled && (!sub || hasHandlers(sub)));
        }
    }
    // Submenus that no state names follow their entries alone.
    for (auto it = submenus_.cbegin(); it != submenus_.cend(); ++it) {
        if (states.enabled.find(it.key()) == states.enabled.end())
            it.value()->menuAction()->setEnabled(hasHandlers(it.value()));
    }
}

}  // namespace sonorit::ui
