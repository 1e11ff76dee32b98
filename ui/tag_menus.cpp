#include "tag_menus.h"

#include <QString>
#include <utility>

#include "frm_genre.h"
#include "library/library_lock.h"
#include "menu_bar.h"
#include "tagedit/retag.h"
#include "tagedit/selection_tagging.h"

namespace sonorit::ui {

namespace {

// A command that changes tracks and their records holds the library's lock.
template <typename Context, typename Result>
void bindLocked(MenuBar& menus, const char* name, PanelContext& p, Context& target, Result (*command)(Context&))
{
    menus.bind(QLatin1String(name), [&p, &target, command] {
        LibraryContext lc = p.edit.library();
        With_Library_Lock(lc, [&] { command(target); });
    });
}

}  // namespace

void Bind_Tag_Menus(MenuBar& menus, PanelContext& p, QWidget* window)
{
    TagEditContext& edit = p.edit;
    const std::pair<const char*, RetagRun (*)(TagEditContext&)> retags[] = {
        {"mnu_Retag_Track", &mnu_Retag_Track},   {"mnu_Retag_Selection", &mnu_Retag_Selection},
        {"mnu_Retag_Album", &mnu_Retag_Album},   {"mnu_Retag_All", &mnu_Retag_All},
        {"mnu_Retag_Folder", &mnu_Retag_Folder}, {"mnu_Retag_Tree", &mnu_Retag_Tree},
    };
    for (const auto& [name, command] : retags)
        bindLocked(menus, name, p, edit, command);

    const std::pair<const char*, int (*)(PanelContext&)> selections[] = {
        {"mnu_Tag_sel_Artist", &mnu_Tag_sel_Artist}, {"mnu_Tag_sel_Album", &mnu_Tag_sel_Album},
        {"mnu_Tag_sel_Year", &mnu_Tag_sel_Year},     {"mnu_Tag_sel_VA_On", &mnu_Tag_sel_VA_On},
        {"mnu_Tag_sel_VA_Off", &mnu_Tag_sel_VA_Off}, {"mnu_Tag_sel_Cover", &mnu_Tag_sel_Cover},
    };
    for (const auto& [name, command] : selections)
        bindLocked(menus, name, p, p, command);
    menus.bind(QStringLiteral("mnu_Tag_sel_Genre"), [&p, window] {
        LibraryContext lc = p.edit.library();
        With_Library_Lock(lc, [&] { mnu_Tag_sel_Genre(p, [window] { return FrmGenre::Ask(window); }); });
    });
}

}  // namespace sonorit::ui
