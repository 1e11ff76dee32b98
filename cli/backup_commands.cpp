// The verbs that keep a copy of the collection: backup mirrors the library
// folder into the library's backup folder, restore brings back what the
// library folder lacks or holds older. Folders come from --dialog, answers
// from --answers; the rows are printed afterwards as "open" prints them.
#include "cli/library_verb.h"
#include "library/backup.h"

namespace sonorit::cli {

namespace {

int backupCommand(CliContext& c, const QStringList& args, bool (*run)(LibraryContext&))
{
    if (args.size() != 1)
        return ExitUsage;
    // Both may end in the refresh, which measures damaged tracks.
    return onLibrary(c, args[0], Lengths::Decoder,
                     [run](LibraryContext& lc) { return run(lc) ? int(ExitOk) : int(ExitFailed); });
}

const CliCommand backup("backup", "backup LIB.vkt", [](CliContext& c, const QStringList& args) {
    return backupCommand(c, args, &mnu_Library_Backup);
});

const CliCommand restore("restore", "restore LIB.vkt", [](CliContext& c, const QStringList& args) {
    return backupCommand(c, args, &mnu_Library_Restore);
});

}  // namespace
}  // namespace sonorit::cli
