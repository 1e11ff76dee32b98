// Library commands of sonorit-cli.
#include "cli/cli_context.h"

namespace sonorit::cli {

namespace {

const CliCommand openCommand("open", "open LIB.vkt", [](CliContext& c, const QStringList& args) {
    if (args.size() != 1)
        return int(ExitUsage);
    const int rc = openLibrary(c, args[0]);
    if (rc == ExitOk)
        printRows(c.lib.MP3_List);
    return rc;
});

}  // namespace
}  // namespace sonorit::cli
