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
    QObject::connect(action, &QAction::triggered, menu, [handler = std::move(handler)] { handler(); });
    entries_.insert(name, action);
    return action;
}

void MenuBar::apply(const MenuStates& states)
{
    for (const auto& [name, enabled] : states.enabled) {
        if (QAction* action = entries_.value(name))
            action->setEnabled(enabled);
    }
}

}  // namespace sonorit::ui
