#include "menus_library.h"

#include <QMenu>

#include "library_controller.h"
#include "menu_bar.h"

namespace sonorit::ui {

namespace {

using Handler = void (LibraryController::*)();

struct Entry {
    const char* name;
    const char* text;
    Handler handler;
};

void addEntries(MenuBar& menus, QMenu* menu, LibraryController& controller, std::initializer_list<Entry> entries)
{
    for (const Entry& e : entries) {
        menus.addEntry(menu, QLatin1String(e.name), QString::fromUtf8(e.text),
                       [&controller, h = e.handler] { (controller.*h)(); });
    }
}

}  // namespace

void Build_Library_Menu(MenuBar& menus, LibraryController& controller)
{
    using C = LibraryController;
    QMenu* menu = menus.menu(QStringLiteral("mnu_Library"));
    addEntries(menus, menu, controller,
               {{"mnu_Library_New", "&New...", &C::newLibrary},
                {"mnu_Library_Open", "&Open...", &C::open},
                {"mnu_Library_Delete", "&Delete...", &C::deleteLibrary},
                {"mnu_Library_Move", "&Move...", &C::move}});
    menu->addSeparator();
    addEntries(menus, menus.addSubmenu(menu, QStringLiteral("mnu_Library_Add"), QStringLiteral("&Add")), controller,
               {{"mnu_Library_Add_MP3", "MP3 &File...", &C::addMp3},
                {"mnu_Library_Scan_Folder", "&Folder...", &C::scanFolder},
                {"mnu_Library_Scan_Tree", "&Tree...", &C::scanTree}});
    addEntries(menus, menus.addSubmenu(menu, QStringLiteral("mnu_Library_Remove"), QStringLiteral("Re&move")),
               controller,
               {{"mnu_Library_Remove_MP3", "&Track", &C::removeTrack},
                {"mnu_Library_Remove_Selection", "&Selection", &C::removeSelection},
                {"mnu_Library_Remove_Album", "&Album", &C::removeAlbum}});
    addEntries(menus, menu, controller,
               {{"mnu_Library_Refresh", "&Refresh", &C::refresh}, {"mnu_Library_Sort", "&Sort", &C::sort}});
    addEntries(menus, menus.addSubmenu(menu, QStringLiteral("mnu_Library_Rename"), QStringLiteral("Re&name")),
               controller,
               {{"mnu_Library_Rename_Track", "&Track", &C::renameTrack},
                {"mnu_Library_Rename_Selection", "&Selection", &C::renameSelection},
                {"mnu_Library_Rename_Album", "&Album", &C::renameAlbum},
                {"mnu_Library_Rename_All", "A&ll", &C::renameAll}});
    addEntries(menus, menus.addSubmenu(menu, QStringLiteral("mnu_Library_Relocate"), QStringLiteral("Re&locate")),
               controller,
               {{"mnu_Library_Relocate_Track", "&Track", &C::relocateTrack},
                {"mnu_Library_Relocate_Selection", "&Selection", &C::relocateSelection},
                {"mnu_Library_Relocate_Album", "&Album", &C::relocateAlbum},
                {"mnu_Library_Relocate_All", "A&ll", &C::relocateAll}});
    menu->addSeparator();
    addEntries(menus, menu, controller,
               {{"mnu_Library_Backup", "&Backup...", &C::backup}, {"mnu_Library_Restore", "Res&tore...", &C::restore}});
    menus.addPlaceholder(menu, QStringLiteral("mnu_Library_Print"), QStringLiteral("&Print..."));
    menu->addSeparator();
    // The window binds Exit: a close request runs it too.
    menus.addPlaceholder(menu, QStringLiteral("mnu_Library_Exit"), QStringLiteral("E&xit"));
}

void Bind_Track_File_Entries(MenuBar& menus, LibraryController& controller)
{
    using C = LibraryController;
    for (const Entry& e : std::initializer_list<Entry>{{"mnu_Tracks_Copy_Track", nullptr, &C::copyTrack},
                                                       {"mnu_Tracks_Copy_Selection", nullptr, &C::copySelection},
                                                       {"mnu_Tracks_Copy_Album", nullptr, &C::copyAlbum},
                                                       {"mnu_Tracks_Delete_Track", nullptr, &C::deleteTrack},
                                                       {"mnu_Tracks_Delete_Selection", nullptr, &C::deleteSelection},
                                                       {"mnu_Tracks_Delete_Album", nullptr, &C::deleteAlbum}})
        menus.bind(QLatin1String(e.name), [&controller, h = e.handler] { (controller.*h)(); });
}

}  // namespace sonorit::ui
