#include "startup.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "file_type.h"
#include "helpers.h"
#include "session_log.h"
#include "settings_families.h"
#include "single_instance.h"
#include "ui_port.h"

namespace sonorit {

QString Join_Command_Line(const QStringList& arguments)
{
    return arguments.join(QLatin1Char(' '));
}

QString Command_Line_Library(const QString& commandLine)
{
    QString text = commandLine;
    if (text.size() <= 7)
        return QString();
    if (text.startsWith(QLatin1Char('"')))
        text.remove(0, 1);
    if (text.endsWith(QLatin1Char('"')))
        text.chop(1);
    if (text.size() < 8 || text.right(4).toLower() != QLatin1String(".vkt") || !File_Exists(text))
        return QString();
    // A name relative to the shell's folder would be stored as it stands in
    // Last_Used_Lib and Folders/Album and mean nothing at the next start.
    return QFileInfo(text).absoluteFilePath();
}

QStringList Find_CD_Drives(const QString& devFolder)
{
    QStringList entries;
    const QStringList names = QDir(devFolder).entryList({QStringLiteral("sr*")}, QDir::System | QDir::Files,
                                                        QDir::Name);
    for (const QString& n : names)
        entries << QStringLiteral("Audio CD Drive ") + devFolder + QLatin1Char('/') + n;
    return entries;
}

StartupResult Run_Startup(AppState& s, UiPort& ui, StartupHost& host, SingleInstance& instance, SessionLog& log,
                          const QString& commandLine, const QString& programPath)
{
    if (!instance.acquire()) {
        ui.message(QStringLiteral("ZEV's MP3 Sonorit already running"), QString(), Buttons::Ok, Icon::None);
        return StartupResult::AlreadyRunning;
    }
    QDir().mkpath(s.paths.Data_Folder);
    log.open(s.paths.Data_Folder + QStringLiteral("Sonorit.log"));
    const QDateTime now = QDateTime::currentDateTime();
    log.line(QStringLiteral("Program Start at ") + now.toString(QStringLiteral("HH:mm:ss")) + QStringLiteral(" on ")
             + now.toString(QStringLiteral("yyyy-MM-dd")));

    log.line(QStringLiteral("Initiating VKT filetype"));
    Register_File_Type(QStringLiteral("ZEV's MP3 Sonorit Library Files"), programPath);
    log.line(QStringLiteral("Associating extension 'vkt' with ZEV's MP3 Sonorit"));
    Associate_Extension(QStringLiteral(".vkt"), QStringLiteral("ZEV's MP3 Sonorit Library File"));

    log.line(QStringLiteral("Initiating start-up variables"));
    host.initStartupVariables();
    ui.setCaption(QStringLiteral("ZEV's MP3 Sonorit"));
    host.showWindow();
    ui.yield();

    log.line(QStringLiteral("Initiating combo's and array's"));
    host.initiateCombosAndArrays();
    log.line(QStringLiteral("Initiating Audio CD drivelist"));
    host.setCdDrives(Find_CD_Drives());

    log.line(QStringLiteral("Getting Library data folder"));
    s.Library_Data_Folder = s.settings.GetSetting(QStringLiteral("Folders"), QStringLiteral("Album"), s.paths.Music_Folder);
    log.line(QStringLiteral("Library data folder is set to ") + s.Library_Data_Folder);
    log.line(QStringLiteral("Getting Playlist data folder"));
    s.Playlist_Data_Folder =
        s.settings.GetSetting(QStringLiteral("Folders"), QStringLiteral("Playlists"), s.paths.Music_Folder);
    log.line(QStringLiteral("Playlist data folder is set to ") + s.Playlist_Data_Folder);
    log.line(QStringLiteral("Setting default Library folder"));
    s.Library_Main_Folder = Add_Backslash(s.paths.Music_Folder);
    log.line(QStringLiteral("Clearing backup folder"));
    s.Backup_Folder.clear();

    log.line(QStringLiteral("Setting default rename and relocate options to 'Options' window"));
    s.Options_Loading = true;
    host.applyDefaultNamingRules();
    s.Options_Loading = false;

    auto stop = [&](const SettingsError& e) {
        log.line(e.text.section(QLatin1Char('\n'), 0, 0));
        log.close();
        ui.message(e.text, QStringLiteral("ZEV's MP3 Sonorit"), Buttons::Ok, Icon::Critical);
        return StartupResult::BadSetting;
    };

    log.line(QStringLiteral("Getting startup library options"));
    if (auto e = Cycle_Startup_Settings(s))
        return stop(*e);

    log.line(QStringLiteral("Inspecting CommandLine"));
    const QString fromCommandLine = Command_Line_Library(commandLine);
    if (!fromCommandLine.isEmpty()) {
        log.line(QStringLiteral("Opening ") + fromCommandLine + QStringLiteral(" at startup"));
        host.checkOpenLibraryFile(fromCommandLine);
        s.Last_Used_Lib = s.Library_File;
        s.settings.SaveSetting(QStringLiteral("Startup"), QStringLiteral("Last_Used_Lib"), s.Last_Used_Lib);
    }

    if (s.Library_File.isEmpty()) {
        // Startup_Option is never read back from the store, so this only acts
        // when the option was set earlier in the same run.
        if (s.Startup_Option == 1 && !s.Last_Used_Lib.isEmpty() && File_Exists(s.Last_Used_Lib)) {
            log.line(QStringLiteral("Opening ") + s.Last_Used_Lib + QStringLiteral(" as last used library"));
            host.checkOpenLibraryFile(s.Last_Used_Lib);
        } else if (s.Startup_Option == 2 && !s.Specific_Lib.isEmpty() && File_Exists(s.Specific_Lib)) {
            log.line(QStringLiteral("Opening ") + s.Specific_Lib + QStringLiteral(" as specific library"));
            host.checkOpenLibraryFile(s.Specific_Lib);
            s.Last_Used_Lib = s.Library_File;
            s.settings.SaveSetting(QStringLiteral("Startup"), QStringLiteral("Last_Used_Lib"), s.Last_Used_Lib);
        }
    }

    s.WMA_Available = host.wmaAvailable();
    log.line(QStringLiteral("Get Rip settings"));
    s.Options_Loading = true;
    if (auto e = Get_Rip_Settings(s)) {
        s.Options_Loading = false;
        return stop(*e);
    }
    log.line(QStringLiteral("Set Rip settings to 'Options' window"));
    Set_Rip_Options(s);
    log.line(QStringLiteral("Save Rip settings"));
    Save_Rip_Settings(s);
    s.Options_Loading = false;

    if (s.WMA_Available) {
        log.line(QStringLiteral("WMA available"));
    } else {
        log.line(QStringLiteral("WMA not available"));
        s.options.ripAsWmaVisible = false;
        host.hideWmaEntries();
    }

    log.line(QStringLiteral("Transferring Main Info to 'Options' window"));
    if (auto e = Cycle_Main_Settings(s))
        return stop(*e);
    log.line(QStringLiteral("Transferring Tag settings to 'Options' window"));
    if (auto e = Cycle_Tag_Settings(s))
        return stop(*e);

    log.line(QStringLiteral("Setting up available 'Menu' functions"));
    s.Menu_Refresh_Wanted = true;
    log.line(QStringLiteral("Enabling timer events"));
    host.enableTimer();
    log.close();
    host.focusLibraryList();
    return StartupResult::Started;
}

void Delete_Temporary_Files(const QString& dataFolder)
{
    for (const char* name : {"Cover.jpg", "Playing.jpg", "PrintCover.jpg", "STBCover.jpg", "STCover.jpg",
                             "RipCover.jpg"}) {
        const QString path = dataFolder + QLatin1String(name);
        if (QFile::exists(path))
            QFile::remove(path);
    }
    const QDir dir(dataFolder);
    for (const QString& pattern : {QStringLiteral("*.mp3"), QStringLiteral("*.wav")}) {
        for (const QString& f : dir.entryList({pattern}, QDir::Files))
            QFile::remove(dir.filePath(f));
    }
}

}  // namespace sonorit
