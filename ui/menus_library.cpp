#include "menus_library.h"

#include <QMenu>

#include "library_controller.h"
#include "menu_bar.h"

namespace sonorit::ui {

void Build_Library_Menu(MenuBar& menus, LibraryController& controller)
{
    QMenu* menu = menus.menu(QStringLiteral("mnu_Library"));
    menus.addEntry(menu, QStringLiteral("mnu_Library_Open"), QStringLiteral("&Open..."), [&controller] { controller.open(); });
    menus.addEntry(menu, QStringLiteral("mnu_Library_Sort"), QStringLiteral("&Sort"), [&controller] { controller.sort(); });
    menu->addSeparator();
    menus.addEntry(menu, QStringLiteral("mnu_Library_Exit"), QStringLiteral("E&xit"), [&controller] { controller.exit(); });
}

}  // namespace sonorit::ui
