#pragma once
// Which menu entries are enabled, decided from the program's state alone.
#include <QString>
#include <map>

namespace sonorit {

struct MenuInputs {
    bool libraryOpen = false;
    bool backupFolderSet = false;
    int playlistCount = 0;
    bool ripEnabled = false;
};

struct MenuStates {
    std::map<QString, bool> enabled;  // by menu entry name, e.g. "mnu_Library_Sort"
    bool chkDestLibraryEnabled = false;
    bool clearChkDestLibrary = false;

    bool isEnabled(const QString& name) const
    {
        const auto it = enabled.find(name);
        return it != enabled.end() && it->second;
    }
};

MenuStates Update_Menus(const MenuInputs& in);

}  // namespace sonorit
