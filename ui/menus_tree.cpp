#include "menus_tree.h"

#include <QMenu>

#include "menu_bar.h"

namespace sonorit::ui {

namespace {

struct Item {
    const char* name;
    const char* text;  // nullptr: a separator
};

void addItems(MenuBar& menus, QMenu* menu, std::initializer_list<Item> items)
{
    for (const Item& item : items) {
        if (!item.text)
            menu->addSeparator();
        else
            menus.addPlaceholder(menu, QLatin1String(item.name), QString::fromUtf8(item.text));
    }
}

QMenu* sub(MenuBar& menus, QMenu* menu, const char* name, const char* text)
{
    return menus.addSubmenu(menu, QLatin1String(name), QString::fromUtf8(text));
}

void tracksMenu(MenuBar& menus)
{
    QMenu* tracks = menus.menu(QStringLiteral("mnu_Tracks"));
    addItems(menus, sub(menus, tracks, "mnu_play", "&Play"),
             {{"mnu_Track_Play", "&Track"},
              {"mnu_Selection_Play", "&Selection"},
              {"mnu_Artist_Play", "A&rtist"},
              {"mnu_Album_Play", "&Album"},
              {"mnu_All_Play", "A&ll"}});
    addItems(menus, sub(menus, tracks, "mnu_add", "Add to Play&list"),
             {{"mnu_Track_Add", "&Track"},
              {"mnu_Selection_Add", "&Selection"},
              {"mnu_Artist_Add", "A&rtist"},
              {"mnu_Album_Add", "&Album"}});
    tracks->addSeparator();
    addItems(menus, sub(menus, tracks, "mnu_Tracks_Copy", "&Copy"),
             {{"mnu_Tracks_Copy_Track", "&Track..."},
              {"mnu_Tracks_Copy_Selection", "&Selection..."},
              {"mnu_Tracks_Copy_Album", "&Album..."}});
    addItems(menus, sub(menus, tracks, "mnu_Tracks_Delete", "&Delete"),
             {{"mnu_Tracks_Delete_Track", "&Track"},
              {"mnu_Tracks_Delete_Selection", "&Selection"},
              {"mnu_Tracks_Delete_Album", "&Album"}});
    addItems(menus, sub(menus, tracks, "mnu_Retag", "&Retag"),
             {{"mnu_Retag_Track", "&Track"},
              {"mnu_Retag_Selection", "&Selection"},
              {"mnu_Retag_Album", "&Album"},
              {"mnu_Retag_All", "A&ll"},
              {"mnu_Retag_Folder", "&Folder..."},
              {"mnu_Retag_Tree", "T&ree..."}});
    addItems(menus, sub(menus, tracks, "mnu_Tag_sel", "&Tag Selection"),
             {{"mnu_Tag_sel_Artist", "A&rtist..."},
              {"mnu_Tag_sel_Album", "&Album..."},
              {"mnu_Tag_sel_Year", "&Year..."},
              {"mnu_Tag_sel_Genre", "&Genre..."},
              {"mnu_Tag_sel_VA_On", "Various Artists &On"},
              {"mnu_Tag_sel_VA_Off", "Various Artists O&ff"},
              {"mnu_Tag_sel_Cover", "&Cover..."}});
}

}  // namespace

void Build_Menu_Tree(MenuBar& menus)
{
    tracksMenu(menus);
    // The entries of the track conversion are numbered as the control array
    // of the original: 2 and 4 are the WMA ones.
    QMenu* convert = menus.menu(QStringLiteral("mnu_convert"));
    addItems(menus, sub(menus, convert, "mnu_convert_track", "Convert &Track"),
             {{"mnu_convert_track_1", "MP3 to &WAV"},
              {"mnu_convert_track_2", "MP3 to W&MA"},
              {"mnu_convert_track_3", "WAV to MP&3"},
              {"mnu_convert_track_4", "WMA to MP3"}});
    addItems(menus, convert,
             {{"mnu_convert_album_from_wav", "Album from W&AV..."},
              {"mnu_convert_album_from_wma", "Album from WM&A..."}});
    addItems(menus, menus.menu(QStringLiteral("mnu_PlayList")),
             {{"mnu_PlayList_Open", "&Open..."},
              {"mnu_Playlist_Merge", "&Merge..."},
              {"mnu_PlayList_Save", "&Save"},
              {"mnu_PlayList_Save_As", "Save &As..."},
              {"mnu_PlayList_Export", "&Export..."},
              {"", nullptr},
              {"mnu_Wav_Add", "Add &WAV Track..."},
              {"mnu_Wma_Add", "Add W&MA Track..."},
              {"mnu_Track_Delete", "&Remove Track"},
              {"mnu_Playlist_Duplicates", "&Duplicates..."},
              {"mnu_PlayList_Clear", "&Clear"}});
    addItems(menus, menus.menu(QStringLiteral("mnu_Extra")),
             {{"mnu_Extra_Search", "&Search..."},
              {"mnu_Extra_Filename_Tag", "&Filename Tagger..."},
              {"mnu_Check_Current_Album", "&Check Current Album..."},
              {"", nullptr},
              {"mnu_Extra_CD_Player", "&CD Player"},
              {"mnu_Extra_Rip", "&Rip Audio CD..."},
              {"", nullptr},
              {"mnu_Extra_Options", "&Options..."}});
    addItems(menus, menus.menu(QStringLiteral("mnu_help")),
             {{"mnu_help_contents", "&Help"},
              {"mnu_help_web", "&Web Site"},
              {"mnu_help_history", "&Revision History"},
              {"", nullptr},
              {"mnu_help_about", "&About..."}});
}

}  // namespace sonorit::ui
