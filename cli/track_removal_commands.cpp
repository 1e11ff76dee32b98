// The verbs of sonorit-cli that take tracks out of a library, erase them,
// copy their files elsewhere, and move the whole library folder. The folders
// their dialogs ask for come from --dialog, the answers to their questions
// from --answers; afterwards the rows of the list are printed as "open"
// prints them.
#include "cli/library_verb.h"
#include "library/library_move.h"
#include "library/track_removal.h"

namespace sonorit::cli {

namespace {

using TrackCommand = bool (*)(LibraryContext&);

struct Scope {
    const char* name;
    TrackCommand remove, erase, copy;
};

const Scope kScopes[] = {
    {"track", &mnu_Library_Remove_MP3, &mnu_Tracks_Delete_Track, &mnu_Tracks_Copy_Track},
    {"selection", &mnu_Library_Remove_Selection, &mnu_Tracks_Delete_Selection, &mnu_Tracks_Copy_Selection},
    {"album", &mnu_Library_Remove_Album, &mnu_Tracks_Delete_Album, &mnu_Tracks_Copy_Album},
};

enum class Family { Remove, Erase, Copy };

// remove|erase|copy LIB.vkt SCOPE [ROW...]: ROWs count from 1 in the order
// "open" prints; the first is the selected row, all of them the selection.
int trackCommand(CliContext& c, const QStringList& args, Family family)
{
    if (args.size() < 2)
        return ExitUsage;
    const Scope* scope = nullptr;
    for (const Scope& s : kScopes)
        if (args[1] == QLatin1String(s.name))
            scope = &s;
    if (!scope)
        return usageError(QStringLiteral("the scope is track, selection or album: ") + args[1]);
    std::vector<int> rows;
    if (const int rc = parseRows(args.mid(2), rows); rc != ExitOk)
        return rc;
    return onLibrary(c, args[0], Lengths::Tags, [&](LibraryContext& lc) {
        if (const int rc = selectRows(lc.lib.MP3_List, rows); rc != ExitOk)
            return rc;
        const TrackCommand run = family == Family::Remove ? scope->remove
                                 : family == Family::Erase ? scope->erase
                                                           : scope->copy;
        return run(lc) ? int(ExitOk) : int(ExitFailed);
    });
}

const CliCommand removeCommand("remove", "remove LIB.vkt track|selection|album [ROW...]",
                               [](CliContext& c, const QStringList& args) {
                                   return trackCommand(c, args, Family::Remove);
                               });

const CliCommand eraseCommand("erase", "erase LIB.vkt track|selection|album [ROW...]",
                              [](CliContext& c, const QStringList& args) {
                                  return trackCommand(c, args, Family::Erase);
                              });

const CliCommand copyCommand("copy", "copy LIB.vkt track|selection|album [ROW...]",
                             [](CliContext& c, const QStringList& args) {
                                 return trackCommand(c, args, Family::Copy);
                             });

const CliCommand moveCommand("move", "move LIB.vkt", [](CliContext& c, const QStringList& args) {
    if (args.size() != 1)
        return int(ExitUsage);
    return onLibrary(c, args[0], Lengths::Tags,
                     [](LibraryContext& lc) { return mnu_Library_Move(lc) ? int(ExitOk) : int(ExitFailed); });
});

}  // namespace
}  // namespace sonorit::cli
