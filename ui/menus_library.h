#pragma once
// The Library menu's entries, and the Tracks menu's entries that work on
// the library's files.
namespace sonorit::ui {

class LibraryController;
class MenuBar;

void Build_Library_Menu(MenuBar& menus, LibraryController& controller);
// The copy and erase entries of the Tracks menu, once that menu is built.
void Bind_Track_File_Entries(MenuBar& menus, LibraryController& controller);

}  // namespace sonorit::ui
