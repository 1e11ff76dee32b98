// The shared part of the verbs that work on a library.
#include "cli/library_verb.h"

#include <QFileInfo>
#include <optional>

#include "library/library_lock.h"
#include "shell/ini_file.h"

namespace sonorit::cli {

QString absolute(const QString& path) { return QFileInfo(path).absoluteFilePath(); }

int usageError(const QString& text)
{
    reportError(text);
    return ExitUsage;
}

void answerNextDialog(CliContext& c, const QString& value) { c.ui.dialogs.push_front(value); }

int onLibrary(CliContext& c, const QString& vkt, Lengths lengths, const std::function<int(LibraryContext&)>& command)
{
    std::optional<DecoderLengths> decoder;
    if (lengths == Lengths::Decoder)
        decoder.emplace(c.lib);
    // The lock is held from before the library is read until the command
    // ends, so that a second writer neither reads a half-changed library nor
    // overwrites what this one wrote.
    LibraryLock lock;
    const QString trackfile = IniFile(absolute(vkt)).read(QStringLiteral("GENERAL"), QStringLiteral("ALBUMLIB_NAME"), {});
    if (!trackfile.isEmpty() && !lock.acquire(trackfile)) {
        reportError(Library_In_Use_Text());
        return int(ExitFailed);
    }
    if (const int rc = openLibrary(c, vkt); rc != ExitOk)
        return rc;
    LibraryContext lc = c.library();
    if (const int rc = command(lc); rc != ExitOk)
        return rc;
    printRows(c.lib.MP3_List);
    return ExitOk;
}

int parseRows(const QStringList& texts, std::vector<int>& rows)
{
    for (const QString& text : texts) {
        bool ok = false;
        const int row = text.toInt(&ok);
        if (!ok || row < 1)
            return usageError(QStringLiteral("a row is a number from 1: ") + text);
        rows.push_back(row - 1);
    }
    return ExitOk;
}

int selectRows(TrackList& list, const std::vector<int>& rows)
{
    for (const int row : rows) {
        if (row >= list.count())
            return usageError(QStringLiteral("row %1 is not in the list of %2 rows").arg(row + 1).arg(list.count()));
    }
    if (!rows.empty())
        list.setSelection(rows, rows.front());
    return ExitOk;
}

int onScopedRows(CliContext& c, const QStringList& args, const QStringList& scopes,
                 const std::function<int(LibraryContext&, int scope)>& run)
{
    if (args.size() < 2)
        return ExitUsage;
    const int scope = int(scopes.indexOf(args[1]));
    if (scope < 0)
        return usageError(QStringLiteral("the scope is ") + scopes.mid(0, scopes.size() - 1).join(QStringLiteral(", "))
                          + QStringLiteral(" or ") + scopes.last() + QStringLiteral(": ") + args[1]);
    std::vector<int> rows;
    if (const int rc = parseRows(args.mid(2), rows); rc != ExitOk)
        return rc;
    return onLibrary(c, args[0], Lengths::Tags, [&](LibraryContext& lc) {
        if (const int rc = selectRows(lc.lib.MP3_List, rows); rc != ExitOk)
            return rc;
        return run(lc, scope);
    });
}

}  // namespace sonorit::cli
