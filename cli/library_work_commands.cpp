// The verbs of sonorit-cli that change a library: new, add, scan, scan-tree,
// refresh, sort, delete, rename and relocate. Each runs the menu command of
// the window program; the file or folder its first dialog asks for comes from
// the command's own arguments, any further dialog from --dialog. Afterwards
// the rows of the list are printed as "open" prints them.
#include <QFile>
#include <QFileInfo>
#include <functional>
#include <optional>

#include "cli/library_verb.h"
#include "library/library_lock.h"
#include "library/lifecycle.h"
#include "shell/durable_file.h"
#include "shell/ini_file.h"
#include "library/naming_commands.h"
#include "library/refresh.h"
#include "library/sort_library.h"
#include "library/track_import.h"
#include "platform/gstreamer/gst_duration_probe.h"
#include "shell/helpers.h"

namespace sonorit::cli {

namespace {

// The import mode of the settings (copy or move), as the window program
// reads it at start.
void readImportMode(CliContext& c)
{
    c.app.Import_Mode = static_cast<int>(Val(c.app.settings.GetSetting(QStringLiteral("Import"), QStringLiteral("Mode"),
                                                                       QStringLiteral("0"))));
}

const CliCommand newCommand("new", "new LIB.vkt", [](CliContext& c, const QStringList& args) {
    if (args.size() != 1)
        return int(ExitUsage);
    const QString vkt = absolute(args[0]);
    if (!vkt.endsWith(QLatin1String(".vkt")))
        return usageError(QStringLiteral("a library file name ends in .vkt: ") + vkt);
    if (QFileInfo(vkt).exists() && !QFileInfo(vkt).isFile())
        return usageError(QStringLiteral("a library file is a regular file, not this: ") + vkt);
    DecoderLengths decoder(c.lib);
    // Then the Main Folder and, if asked for, the Backup folder from --dialog.
    answerNextDialog(c, vkt);
    // Both folder choices come before the Trackfile is made: a library given
    // up there is only its unfinished .vkt file, which goes.
    // A library given up on leaves nothing: its .vkt and the empty
    // Trackfile and IDfile this run made.
    const auto leaveNothing = [&c, vkt] {
        QFile::remove(vkt);
        for (const QString& file : {c.app.Trackfile, c.app.IDfile}) {
            if (!file.isEmpty() && QFileInfo(file).isFile() && QFileInfo(file).size() == 0)
                QFile::remove(file);
        }
    };
    c.ui.beforeGivingUp = leaveNothing;
    LibraryContext lc = c.library();
    mnu_Library_New(lc);
    if (c.app.Library_File != vkt || !QFileInfo(vkt).isFile() || !File_Exists(c.app.Trackfile)) {
        reportError(QStringLiteral("the library could not be created: ") + vkt);
        leaveNothing();
        return int(ExitFailed);
    }
    printRows(c.lib.MP3_List);
    return int(ExitOk);
});

const CliCommand addCommand("add", "add LIB.vkt FILE...", [](CliContext& c, const QStringList& args) {
    if (args.size() < 2)
        return int(ExitUsage);
    readImportMode(c);
    return onLibrary(c, args[0], Lengths::Decoder, [&](LibraryContext& lc) {
        const SyncBatch syncs;  // the imports' small writes are synced together
        for (const QString& file : args.mid(1)) {
            const QString path = absolute(file);
            // The menu command passes over such a file without a word.
            if (!QFileInfo(path).isFile())
                reportError(QStringLiteral("file not found: ") + path);
            answerNextDialog(c, path);
            mnu_Library_Add_MP3(lc);
        }
        return int(ExitOk);
    });
});

int scanCommand(CliContext& c, const QStringList& args, void (*scan)(LibraryContext&))
{
    if (args.size() != 2)
        return ExitUsage;
    const QString folder = absolute(args[1]);
    if (!QFileInfo(folder).isDir())
        return usageError(QStringLiteral("not a folder: ") + folder);
    readImportMode(c);
    return onLibrary(c, args[0], Lengths::Decoder, [&](LibraryContext& lc) {
        answerNextDialog(c, folder);
        scan(lc);
        return int(ExitOk);
    });
}

const CliCommand scanFolder("scan", "scan LIB.vkt DIR", [](CliContext& c, const QStringList& args) {
    return scanCommand(c, args, &mnu_Library_Scan_Folder);
});

const CliCommand scanTree("scan-tree", "scan-tree LIB.vkt DIR", [](CliContext& c, const QStringList& args) {
    return scanCommand(c, args, &mnu_Library_Scan_Tree);
});

// A menu command that works on the whole open library and asks for nothing.
int wholeLibraryCommand(CliContext& c, const QStringList& args, Lengths lengths, void (*run)(LibraryContext&))
{
    if (args.size() != 1)
        return ExitUsage;
    return onLibrary(c, args[0], lengths, [run](LibraryContext& lc) {
        run(lc);
        return int(ExitOk);
    });
}

const CliCommand refresh("refresh", "refresh LIB.vkt", [](CliContext& c, const QStringList& args) {
    return wholeLibraryCommand(c, args, Lengths::Decoder, [](LibraryContext& lc) { mnu_Library_Refresh(lc); });
});

const CliCommand sort("sort", "sort LIB.vkt", [](CliContext& c, const QStringList& args) {
    return wholeLibraryCommand(c, args, Lengths::Tags, &mnu_Library_Sort);
});

// The library is not opened first. A run of sonorit-cli starts with no
// library open, and "delete LIB.vkt" names another library than the current
// one in the window program's sense: it asks "Delete Libray?" and removes the
// three files. Opening it first would make it the current library, whose
// branch also closes it and switches off ripping into the library in the
// settings, a change meant for the window program's own library; and a
// library too damaged to open could then not be deleted at all.
const CliCommand deleteCommand("delete", "delete LIB.vkt", [](CliContext& c, const QStringList& args) {
    if (args.size() != 1)
        return int(ExitUsage);
    const QString vkt = absolute(args[0]);
    if (!File_Exists(vkt) || !vkt.endsWith(QLatin1String(".vkt"))) {
        reportError(QStringLiteral("not a library file: ") + vkt);
        return int(ExitFailed);
    }
    answerNextDialog(c, vkt);
    LibraryContext lc = c.library();
    mnu_Library_Delete(lc);
    printRows(c.lib.MP3_List);
    return int(ExitOk);
});

using NamingCommand = void (*)(LibraryContext&);

// The commands of each scope: track, selection, album, all.
const NamingCommand kRename[] = {&mnu_Library_Rename_Track, &mnu_Library_Rename_Selection,
                                 &mnu_Library_Rename_Album, &mnu_Library_Rename_All};
const NamingCommand kRelocate[] = {&mnu_Library_Relocate_Track, &mnu_Library_Relocate_Selection,
                                   &mnu_Library_Relocate_Album, &mnu_Library_Relocate_All};

// rename|relocate LIB.vkt SCOPE [ROW...]
int namingCommand(CliContext& c, const QStringList& args, const NamingCommand (&commands)[4])
{
    const QStringList scopes{QStringLiteral("track"), QStringLiteral("selection"), QStringLiteral("album"),
                             QStringLiteral("all")};
    return onScopedRows(c, args, scopes, [&](LibraryContext& lc, int scope) {
        commands[scope](lc);
        return int(ExitOk);
    });
}

const CliCommand renameCommand("rename", "rename LIB.vkt track|selection|album|all [ROW...]",
                               [](CliContext& c, const QStringList& args) { return namingCommand(c, args, kRename); });

const CliCommand relocateCommand("relocate", "relocate LIB.vkt track|selection|album|all [ROW...]",
                                 [](CliContext& c, const QStringList& args) { return namingCommand(c, args, kRelocate); });

}  // namespace
}  // namespace sonorit::cli
