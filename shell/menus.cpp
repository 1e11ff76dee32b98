#include "menus.h"

namespace sonorit {

MenuStates Update_Menus(const MenuInputs& in)
{
    MenuStates m;
    for (const char* name : {"mnu_Library_New", "mnu_Library_Open", "mnu_Library_Delete", "mnu_Library_Exit",
                             "mnu_PlayList_Open", "mnu_Extra_Options", "mnu_Extra_Filename_Tag"})
        m.enabled[QLatin1String(name)] = true;
    for (const char* name : {"mnu_Library_Move", "mnu_Library_Refresh", "mnu_Library_Sort", "mnu_Library_Backup",
                             "mnu_Library_Print", "mnu_Library_Add", "mnu_Library_Remove", "mnu_Tracks_Copy",
                             "mnu_Tracks_Delete", "mnu_Library_Relocate", "mnu_Library_Rename", "mnu_Extra_Search",
                             "mnu_play", "mnu_add"})
        m.enabled[QLatin1String(name)] = in.libraryOpen;
    // The tag batches work on the library's rows; the folder ones refresh it.
    for (const char* name : {"mnu_Retag", "mnu_Retag_Track", "mnu_Retag_Selection", "mnu_Retag_Album",
                             "mnu_Retag_All", "mnu_Retag_Folder", "mnu_Retag_Tree", "mnu_Tag_sel",
                             "mnu_Tag_sel_Artist", "mnu_Tag_sel_Album", "mnu_Tag_sel_Year", "mnu_Tag_sel_Genre",
                             "mnu_Tag_sel_VA_On", "mnu_Tag_sel_VA_Off", "mnu_Tag_sel_Cover"})
        m.enabled[QLatin1String(name)] = in.libraryOpen;
    m.enabled[QStringLiteral("mnu_Library_Restore")] = in.libraryOpen && in.backupFolderSet;
    m.chkDestLibraryEnabled = in.libraryOpen;
    m.clearChkDestLibrary = !in.libraryOpen;
    for (const char* name : {"mnu_PlayList_Save", "mnu_PlayList_Save_As", "mnu_PlayList_Export", "mnu_Track_Delete",
                             "mnu_PlayList_Clear"})
        m.enabled[QLatin1String(name)] = in.playlistCount > 0;
    m.enabled[QStringLiteral("mnu_Extra_CD_Player")] = in.ripEnabled;
    return m;
}

}  // namespace sonorit
