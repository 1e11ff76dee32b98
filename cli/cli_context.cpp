#include "cli_context.h"

#include <QFileInfo>
#include <cstdio>

#include "library/open_library.h"
#include "shell/helpers.h"

namespace sonorit::cli {

namespace {
std::vector<CommandEntry>& table()
{
    static std::vector<CommandEntry> entries;
    return entries;
}

void write(FILE* f, const QString& text)
{
    const QByteArray bytes = text.toUtf8();
    fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), f);
}
}  // namespace

CliCommand::CliCommand(const char* verb, const char* usage, CommandFn run)
{
    table().push_back({QLatin1String(verb), QLatin1String(usage), std::move(run)});
}

const std::vector<CommandEntry>& commands()
{
    return table();
}

void out(const QString& text) { write(stdout, text); }
void err(const QString& text) { write(stderr, text); }

void reportError(const QString& text)
{
    err(QStringLiteral("{\"error\":") + jsonString(text) + QStringLiteral("}\n"));
}

void printRows(const TrackList& list)
{
    QString text;
    for (int i = 0; i < list.count(); ++i) {
        const TrackRow& row = list.row(i);
        for (int col = 0; col < TrackColumnCount; ++col) {
            if (col)
                text += QLatin1Char('\t');
            text += row[col];
        }
        text += QLatin1Char('\n');
        if (text.size() > 1 << 16) {
            out(text);
            text.clear();
        }
    }
    out(text);
    fflush(stdout);
}

int openLibrary(CliContext& c, const QString& given)
{
    const QString path = QFileInfo(given).absoluteFilePath();
    if (File_Exists(path) && !QFileInfo(path).isFile()) {
        reportError(QStringLiteral("a library file is a regular file, not this: ") + path);
        return ExitUsage;
    }
    if (!File_Exists(path) || path.right(4) != QLatin1String(".vkt")) {
        reportError(QStringLiteral("not a library file: ") + path);
        return ExitFailed;
    }
    LibraryContext lc = c.library();
    return Open_Library(lc, path) ? ExitOk : ExitFailed;
}

}  // namespace sonorit::cli
