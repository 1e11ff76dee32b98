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
    QObject::connect(action, &QAction::triggered, menu, [this, handler = std::move(handler)] {
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
    entries_.insert(name, action);
    return action;
}

QMenu* MenuBar::addSubmenu(QMenu* menu, const QString& name, const QString& text)
{
    QMenu* sub = menu->addMenu(text);
    sub->setObjectName(name);
    sub->menuAction()->setObjectName(name);
    entries_.insert(name, sub->menuAction());
    return sub;
}

void MenuBar::apply(const MenuStates& states)
{
    for (const auto& [name, enabled] : states.enabled) {
        if (QAction* action = entries_.value(name))
            action->setEnabled(enabled);
    }
}

}  // namespace sonorit::ui
