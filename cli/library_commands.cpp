// Library commands of sonorit-cli.
#include <QFileInfo>

#include "cli/cli_context.h"
#include "library/open_library.h"
#include "shell/helpers.h"

namespace sonorit::cli {

namespace {

// Opens a library as the window program does with a path; on failure the
// program's own message has gone to standard error already.
int openLibrary(CliContext& c, const QString& given)
{
    // The program keeps absolute paths in its settings.
    const QString path = QFileInfo(given).absoluteFilePath();
    if (!File_Exists(path) || path.right(4) != QLatin1String(".vkt")) {
        reportError(QStringLiteral("not a library file: ") + path);
        return ExitFailed;
    }
    LibraryContext lc = c.library();
    return Open_Library(lc, path) ? ExitOk : ExitFailed;
}

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
