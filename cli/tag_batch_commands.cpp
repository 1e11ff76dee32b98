// The tag batches of the Tracks menu: quick-retag (Quick Retag of a track,
// the selection, an album, the library, a folder or a tree) and
// tag-selection (one field set in every selected row). Afterwards the rows
// of the list are printed as "open" prints them.
#include <QFileInfo>

#include "cli/library_verb.h"
#include "cli/play_ui.h"
#include "tagedit/retag.h"
#include "tagedit/selection_tagging.h"

namespace sonorit::cli {

namespace {

const QStringList kRowScopes = {QStringLiteral("track"), QStringLiteral("selection"), QStringLiteral("album"),
                                QStringLiteral("all")};

int exitOf(const RetagRun& run) { return run.failed > 0 ? ExitFailed : ExitOk; }

int quickRetagFolder(CliContext& c, const QStringList& args, bool tree)
{
    if (args.size() != 3)
        return ExitUsage;
    const QString folder = absolute(args[2]);
    if (!QFileInfo(folder).isDir())
        return usageError(QStringLiteral("not a folder: ") + folder);
    return onLibrary(c, args[0], Lengths::Decoder, [&](LibraryContext& lc) {
        TagState tags = Fresh_Tag_State(lc.app);
        TagEditContext edit{lc.app, lc.lib, lc.ui, tags};
        answerNextDialog(c, folder);
        return exitOf(tree ? mnu_Retag_Tree(edit) : mnu_Retag_Folder(edit));
    });
}

const CliCommand quickRetag(
    "quick-retag", "quick-retag LIB.vkt track|selection|album|all [ROW...] | quick-retag LIB.vkt folder|tree DIR",
    [](CliContext& c, const QStringList& args) {
        if (args.size() >= 2 && (args[1] == QLatin1String("folder") || args[1] == QLatin1String("tree")))
            return quickRetagFolder(c, args, args[1] == QLatin1String("tree"));
        return onScopedRows(c, args, kRowScopes + QStringList{QStringLiteral("folder"), QStringLiteral("tree")},
                            [](LibraryContext& lc, int scope) {
                                TagState tags = Fresh_Tag_State(lc.app);
                                TagEditContext edit{lc.app, lc.lib, lc.ui, tags};
                                RetagRun (*const commands[])(TagEditContext&) = {
                                    &mnu_Retag_Track, &mnu_Retag_Selection, &mnu_Retag_Album, &mnu_Retag_All};
                                return exitOf(commands[scope](edit));
                            });
    });

struct Field {
    const char* word;
    bool takesValue;
};
const Field kFields[] = {{"artist", true}, {"album", true}, {"year", true},  {"genre", true},
                         {"va-on", false}, {"va-off", false}, {"cover", true}};

int runField(PanelContext& p, int field, const QString& value)
{
    switch (field) {
    case 0: return mnu_Tag_sel_Artist(p);
    case 1: return mnu_Tag_sel_Album(p);
    case 2: return mnu_Tag_sel_Year(p);
    case 3: return mnu_Tag_sel_Genre(p, [&value] { return value; });
    case 4: return mnu_Tag_sel_VA_On(p);
    case 5: return mnu_Tag_sel_VA_Off(p);
    default: return mnu_Tag_sel_Cover(p);
    }
}

// VALUE answers the command's input box (the genre window, the JPEG dialog);
// the input boxes asked again take the --answers items in order.
const CliCommand tagSelection(
    "tag-selection", "tag-selection LIB.vkt artist|album|year|genre|va-on|va-off|cover [VALUE] ROW...",
    [](CliContext& c, const QStringList& args) {
        if (args.size() < 2)
            return int(ExitUsage);
        int field = -1;
        for (int i = 0; i < int(std::size(kFields)); ++i) {
            if (args[1] == QLatin1String(kFields[i].word))
                field = i;
        }
        if (field < 0)
            return usageError(QStringLiteral("the field is artist, album, year, genre, va-on, va-off or cover: ")
                              + args[1]);
        const bool takesValue = kFields[field].takesValue;
        if (args.size() < (takesValue ? 4 : 3))
            return int(ExitUsage);
        QString value = takesValue ? args[2] : QString();
        std::vector<int> rows;
        if (const int rc = parseRows(args.mid(takesValue ? 3 : 2), rows); rc != ExitOk)
            return rc;
        if (field == 3 && value != QLatin1String("Cancel") && !value.isEmpty() && !Genre_Answer_Valid(value))
            return usageError(QStringLiteral("a genre is three digits of its index, then its text: ") + value);
        if (field == 6) {
            value = absolute(value);
            if (!QFileInfo(value).isFile())
                return usageError(QStringLiteral("file not found: ") + value);
        }

        PlayUi ui(c.ui);  // input boxes take the --answers items
        CliContext typed{c.app, c.lib, ui};
        if (field <= 2)
            ui.answers.push_front(value);
        else if (field == 6)
            answerNextDialog(typed, value);
        return onLibrary(typed, args[0], Lengths::Tags, [&](LibraryContext& lc) {
            if (const int rc = selectRows(lc.lib.MP3_List, rows); rc != ExitOk)
                return rc;
            TagState tags = Fresh_Tag_State(lc.app);
            TagEditContext edit{lc.app, lc.lib, lc.ui, tags};
            TagPanels panels;
            PanelContext p{edit, panels, {}, {}};
            return runField(p, field, value) > 0 ? int(ExitFailed) : int(ExitOk);
        });
    });

}  // namespace

}  // namespace sonorit::cli
