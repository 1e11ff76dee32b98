#pragma once
// What every command of sonorit-cli works with, and the table of commands.
// A command file registers itself with one static CliCommand.
#include <QString>
#include <QStringList>
#include <functional>

#include "cli/cli_ui.h"
#include "library/library_state.h"
#include "shell/app_state.h"

namespace sonorit::cli {

enum ExitCode { ExitOk = 0, ExitFailed = 1, ExitUsage = 2 };

struct CliContext {
    AppState& app;
    LibraryState& lib;
    CliUi& ui;
    LibraryContext library() { return LibraryContext{app, lib, ui}; }
};

using CommandFn = std::function<int(CliContext&, const QStringList& args)>;

struct CliCommand {
    CliCommand(const char* verb, const char* usage, CommandFn run);
};

struct CommandEntry {
    QString verb;
    QString usage;
    CommandFn run;
};
const std::vector<CommandEntry>& commands();

// Writes UTF-8 text to standard output or error.
void out(const QString& text);
void err(const QString& text);
// One JSON line {"error": text} on standard error.
void reportError(const QString& text);
// The rows of MP3_List, 13 columns separated by TAB, one line each.
void printRows(const TrackList& list);

// Opens the library file as the window program does with a path given on its
// command line (the path made absolute first, as the settings keep it).
// ExitFailed when it is no library file or did not open; the reason has gone
// to standard error already.
int openLibrary(CliContext& c, const QString& given);

}  // namespace sonorit::cli
