#pragma once
// The start-up of the window program, step by step in a fixed order, with a
// line in the session log for each step. Window work is left to the host.
#include <QString>
#include <QStringList>

#include "app_state.h"

namespace sonorit {

class SessionLog;
class SingleInstance;
class UiPort;

class StartupHost {
public:
    virtual ~StartupHost() = default;
    virtual void initStartupVariables() {}
    virtual void showWindow() {}
    virtual void initiateCombosAndArrays() {}
    virtual void setCdDrives(const QStringList& /*comboEntries*/) {}
    virtual void applyDefaultNamingRules() {}
    virtual void checkOpenLibraryFile(const QString& path) = 0;
    virtual bool wmaAvailable() { return false; }
    virtual void hideWmaEntries() {}
    virtual void enableTimer() {}
    virtual void focusLibraryList() {}
};

enum class StartupResult { Started, AlreadyRunning, BadSetting };

// The command line as one text: the arguments joined by blanks.
QString Join_Command_Line(const QStringList& arguments);
// The .vkt path the command line names, or "" when it is to be ignored.
QString Command_Line_Library(const QString& commandLine);
// "Audio CD Drive /dev/sr0" for each optical drive of the machine.
QStringList Find_CD_Drives(const QString& devFolder = QStringLiteral("/dev"));

StartupResult Run_Startup(AppState& s, UiPort& ui, StartupHost& host, SingleInstance& instance, SessionLog& log,
                          const QString& commandLine, const QString& programPath);

// The exit sequence's file work: temporary pictures and audio copies go.
void Delete_Temporary_Files(const QString& dataFolder);

}  // namespace sonorit
