#include "naming_commands.h"

#include "library/open_library.h"
#include "library/sort_library.h"
#include "library/track_moves.h"
#include "shell/ui_port.h"

namespace sonorit {

std::vector<int> Album_Rows(LibraryContext& c, const AlbumMessages& unknown)
{
    const TrackList& list = c.lib.MP3_List;
    const int sel = list.selected();
    const TrackRow& s = list.row(sel);
    const bool various = s[ColVA] == QLatin1String("Yes");
    if (various && s[ColAlbum].isEmpty()) {
        c.ui.message(unknown.albumText, unknown.albumTitle, Buttons::Ok, Icon::None);
        return {};
    }
    if (!various && (s[ColArtist].isEmpty() || s[ColAlbum].isEmpty())) {
        c.ui.message(unknown.artistText, unknown.artistTitle, Buttons::Ok, Icon::None);
        return {};
    }
    std::vector<int> rows{sel};
    for (int i = 0; i < list.count(); ++i) {
        const TrackRow& r = list.row(i);
        const bool match = various ? r[ColVA] == QLatin1String("Yes") && r[ColAlbum] == s[ColAlbum]
                                   : r[ColArtist] == s[ColArtist] && r[ColAlbum] == s[ColAlbum];
        if (match && i != sel)
            rows.push_back(i);
    }
    return rows;
}

namespace {

enum class Action { Rename, Relocate };

std::vector<int> albumRows(LibraryContext& c)
{
    return Album_Rows(c, {QStringLiteral("Unknown Album"), QStringLiteral("No Album known for this Track"),
                          QStringLiteral("Unknown Artist and/or Album"),
                          QStringLiteral("No Artist and/or Album known for this Track")});
}

// The indexes are taken before the first change and not corrected when a
// replaced file takes a row out; rows that have gone past the end are passed.
void run(LibraryContext& c, Action action, const std::vector<int>& rows, bool tidy, bool showProgress)
{
    TrackList& list = c.lib.MP3_List;
    const QString remembered = list.field(list.selected(), ColFilename);
    // The queue is served between rows; the window must not start other
    // library work meanwhile.
    c.ui.lockMainWindow();
    if (showProgress) {
        c.ui.showProgress();
        c.ui.shieldLibrary();
        c.ui.setProgressRange(0, list.count());
        c.ui.setLabel17(action == Action::Rename ? QStringLiteral("Renaming all Files...")
                                                 : QStringLiteral("Relocating all Files..."));
    }
    Begin_Record_Batch(c);
    int done = 0;
    for (const int index : rows) {
        if (index >= list.count())
            continue;
        if (showProgress) {
            c.ui.setProgressValue(++done);
            c.ui.setLabel18((action == Action::Rename ? QStringLiteral("Renaming Track ")
                                                      : QStringLiteral("Relocating Track "))
                            + list.field(index, ColFilename));
        }
        const bool goOn = action == Action::Rename ? Rename_Track(c, index) : Relocate_Track(c, index, tidy);
        if (action == Action::Relocate || showProgress)
            c.ui.yield();
        if (!goOn)
            break;
    }
    End_Record_Batch(c);
    if (showProgress) {
        c.ui.hideProgress();
        c.ui.unshieldLibrary();
        c.ui.setProgressValue(0);
    }
    c.ui.unlockMainWindow();
    if (action == Action::Relocate) {
        Sort_Library_File(c);
        MP3Find(list, remembered, 1, 1);
    }
}

bool nothingSelected(const LibraryContext& c)
{
    return c.lib.MP3_List.isEmpty() || c.lib.MP3_List.selected() < 0;
}

std::vector<int> allRows(const TrackList& list)
{
    std::vector<int> rows(static_cast<size_t>(list.count()));
    for (int i = 0; i < list.count(); ++i)
        rows[static_cast<size_t>(i)] = i;
    return rows;
}

void track(LibraryContext& c, Action a)
{
    if (!nothingSelected(c))
        run(c, a, {c.lib.MP3_List.selected()}, false, false);
}

void selection(LibraryContext& c, Action a)
{
    if (!nothingSelected(c))
        run(c, a, c.lib.MP3_List.selectedRows(), true, false);
}

void album(LibraryContext& c, Action a)
{
    if (nothingSelected(c))
        return;
    const std::vector<int> rows = albumRows(c);
    if (!rows.empty())
        run(c, a, rows, true, false);
}

void all(LibraryContext& c, Action a)
{
    if (!nothingSelected(c))
        run(c, a, allRows(c.lib.MP3_List), true, true);
}

}  // namespace

void mnu_Library_Rename_Track(LibraryContext& c) { track(c, Action::Rename); }
void mnu_Library_Rename_Selection(LibraryContext& c) { selection(c, Action::Rename); }
void mnu_Library_Rename_Album(LibraryContext& c) { album(c, Action::Rename); }
void mnu_Library_Rename_All(LibraryContext& c) { all(c, Action::Rename); }
void mnu_Library_Relocate_Track(LibraryContext& c) { track(c, Action::Relocate); }
void mnu_Library_Relocate_Selection(LibraryContext& c) { selection(c, Action::Relocate); }
void mnu_Library_Relocate_Album(LibraryContext& c) { album(c, Action::Relocate); }
void mnu_Library_Relocate_All(LibraryContext& c) { all(c, Action::Relocate); }

}  // namespace sonorit
