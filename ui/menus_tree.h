#pragma once
// The entries of the Tracks, Convert, PlayList, Extra and Help menus. They
// come in without handlers; each subsystem binds the entries it has built, and
// the others stay disabled.
namespace sonorit::ui {

class MenuBar;

void Build_Menu_Tree(MenuBar& menus);

}  // namespace sonorit::ui
