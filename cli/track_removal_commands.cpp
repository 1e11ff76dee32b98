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

// The commands of each scope: track, selection, album.
const TrackCommand kRemove[] = {&mnu_Library_Remove_MP3, &mnu_Library_Remove_Selection, &mnu_Library_Remove_Album};
const TrackCommand kErase[] = {&mnu_Tracks_Delete_Track, &mnu_Tracks_Delete_Selection, &mnu_Tracks_Delete_Album};
const TrackCommand kCopy[] = {&mnu_Tracks_Copy_Track, &mnu_Tracks_Copy_Selection, &mnu_Tracks_Copy_Album};

// remove|erase|copy LIB.vkt SCOPE [ROW...]
int trackCommand(CliContext& c, const QStringList& args, const TrackCommand (&commands)[3])
{
    const QStringList scopes{QStringLiteral("track"), QStringLiteral("selection"), QStringLiteral("album")};
    return onScopedRows(c, args, scopes, [&](LibraryContext& lc, int scope) {
        return commands[scope](lc) ? int(ExitOk) : int(ExitFailed);
    });
}

const CliCommand removeCommand("remove", "remove LIB.vkt track|selection|album [ROW...]",
                               [](CliContext& c, const QStringList& args) {
                                   return trackCommand(c, args, kRemove);
                               });

const CliCommand eraseCommand("erase", "erase LIB.vkt track|selection|album [ROW...]",
                              [](CliContext& c, const QStringList& args) {
                                  return trackCommand(c, args, kErase);
                              });

const CliCommand copyCommand("copy", "copy LIB.vkt track|selection|album [ROW...]",
                             [](CliContext& c, const QStringList& args) {
                                 return trackCommand(c, args, kCopy);
                             });

const CliCommand moveCommand("move", "move LIB.vkt", [](CliContext& c, const QStringList& args) {
    if (args.size() != 1)
        return int(ExitUsage);
    return onLibrary(c, args[0], Lengths::Tags,
                     [](LibraryContext& lc) { return mnu_Library_Move(lc) ? int(ExitOk) : int(ExitFailed); });
});

}  // namespace
}  // namespace sonorit::cli
