#pragma once
// The Library menu's entries.
namespace sonorit::ui {

class LibraryController;
class MenuBar;

void Build_Library_Menu(MenuBar& menus, LibraryController& controller);

}  // namespace sonorit::ui
