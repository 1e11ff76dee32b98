#pragma once
// The Tracks menu's Retag and Tag Selection entries: each runs its core
// command on the window's tag context under the library's lock.
class QWidget;

namespace sonorit {
struct PanelContext;
}

namespace sonorit::ui {

class MenuBar;

// `window` parents the genre window.
void Bind_Tag_Menus(MenuBar& menus, PanelContext& panels, QWidget* window);

}  // namespace sonorit::ui
