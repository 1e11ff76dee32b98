#pragma once
// The program's global values, owned by one object so that tests can make a
// fresh one. The Options window stays loaded for the whole run in the
// original design; its controls are mirrored by OptionsState, which the
// settings families fill and read back.
#include <QString>
#include <array>

#include "app_paths.h"
#include "settings_store.h"

namespace sonorit {

class UiPort;

struct RipSettings {
    int Rip_As = 0;
    int MP3_Bitrate = 8;
    bool MP3_VBR = true;
    int MP3_VBR_Quality = 0;
    int MP3_Max_VBR = 8;
    bool MP3_Rip_To = true;
    QString MP3_Rip_To_Folder;
    int WAV_Bitrate = 0;
    int WAV_Samples = 1;
    int WAV_Channels = 0;
    QString WAV_Rip_To_Folder;
    int WMA_Codecs = 0;
    int WMA_Format = 0;
    QString WMA_Rip_To_Folder;
};

struct OptionsState {
    // Main
    int importModeOption = 0;  // index of the selected entry of the option pair
    QString backupFolderText;
    QString artFolderText;
    // Startup
    int startupOption = 0;
    bool specificLibEnabled = false;  // name field and browse button
    QString specificLibName;
    // Rip
    RipSettings rip;
    bool chkDestLibraryEnabled = false;
    bool chkDestLibrary = false;
    bool ripAsWmaVisible = true;
    // Tag
    std::array<bool, 14> tagChecks{};
    bool tagReadOther = false;  // "Read ID3v2.4 and v2.2 tags"
};

struct AppState {
    explicit AppState(AppPaths p) : paths(std::move(p)), settings(paths.Settings_File) {}

    AppPaths paths;
    SettingsStore settings;

    QString Library_File;
    QString Library_File_Name;
    QString Library_Name;
    QString Library_Data_Folder;
    QString Playlist_Data_Folder;
    QString Library_Main_Folder;
    QString Backup_Folder;
    QString Quarantaine_Folder;
    QString Trackfile;
    QString IDfile;

    int Startup_Option = 0;
    QString Last_Used_Lib;
    QString Specific_Lib;
    QString Specific_Lib_Copy;  // what the Options window compares against
    bool Options_Loading = false;
    bool Menu_Refresh_Wanted = false;

    QString Art_Folder;
    int Import_Mode = 0;
    RipSettings Rip;
    std::array<bool, 14> Tag_Options{};
    bool Tag_Read_Other = false;  // TagData/TAG_READ_OTHER: read v2.4 and v2.2 tags as v2.3
    bool WMA_Available = true;

    OptionsState options;

    bool libraryOpen() const { return !Library_File.isEmpty(); }
    const QString& Data_Folder() const { return paths.Data_Folder; }
};

}  // namespace sonorit
