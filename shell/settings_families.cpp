#include "settings_families.h"

#include "helpers.h"
#include "ini_file.h"

namespace sonorit {

namespace {

const QString kFolders = QStringLiteral("Folders");
const QString kImport = QStringLiteral("Import");
const QString kStartup = QStringLiteral("Startup");
const QString kRip = QStringLiteral("RipData");
const QString kTag = QStringLiteral("TagData");
const QString kReadOther = QStringLiteral("TAG_READ_OTHER");
const QString kGeneral = QStringLiteral("GENERAL");

SettingsError notANumber(const QString& section, const QString& key, const QString& value)
{
    return {QStringLiteral("The setting %1/%2 holds \"%3\", which is not a number.\n"
                           "Correct or remove it in %4 and start again.")
                .arg(section, key, value, QStringLiteral("ZEVSonorit.ini"))};
}

// Reads a whole number as the old runtime's CInt would: blanks around it are
// allowed, anything else is an error.
std::optional<SettingsError> readInt(const AppState& s, const QString& section, const QString& key,
                                     const QString& def, int* out)
{
    const QString v = s.settings.GetSetting(section, key, def);
    bool ok = false;
    const int n = v.trimmed().toInt(&ok);
    if (!ok || n < -32768 || n > 32767) {
        if (v.trimmed().compare(QLatin1String("True"), Qt::CaseInsensitive) == 0) { *out = -1; return {}; }
        if (v.trimmed().compare(QLatin1String("False"), Qt::CaseInsensitive) == 0) { *out = 0; return {}; }
        return notANumber(section, key, v);
    }
    *out = n;
    return {};
}

std::optional<SettingsError> readBool(const AppState& s, const QString& section, const QString& key,
                                      const QString& def, bool* out)
{
    const QString v = s.settings.GetSetting(section, key, def).trimmed();
    if (v.compare(QLatin1String("True"), Qt::CaseInsensitive) == 0) { *out = true; return {}; }
    if (v.compare(QLatin1String("False"), Qt::CaseInsensitive) == 0) { *out = false; return {}; }
    bool ok = false;
    const long long n = v.toLongLong(&ok);
    if (!ok)
        return SettingsError{QStringLiteral("The setting %1/%2 holds \"%3\", which is neither True nor False.\n"
                                            "Correct or remove it in ZEVSonorit.ini and start again.")
                                 .arg(section, key, v)};
    *out = n != 0;
    return {};
}

template <typename F>
std::optional<SettingsError> cycle(AppState& s, std::optional<SettingsError> (*get)(AppState&), F setThenSave)
{
    s.Options_Loading = true;
    auto err = get(s);
    if (!err)
        setThenSave();
    s.Options_Loading = false;
    return err;
}

}  // namespace

QString Bool_Text(bool value)
{
    return value ? QStringLiteral("True") : QStringLiteral("False");
}

QString Tag_Key(int index)
{
    return QStringLiteral("TAG_") + QString::number(index + 100).right(2);
}

std::optional<SettingsError> Get_Main_Settings(AppState& s)
{
    if (s.libraryOpen()) {
        s.Backup_Folder = GetPrivateProfileString(kGeneral, QStringLiteral("BAK_FOLDER"), QString(), s.Library_File);
        if (!s.Backup_Folder.isEmpty()) {
            s.Backup_Folder = Add_Backslash(s.Backup_Folder);
            WritePrivateProfileString(kGeneral, QStringLiteral("BAK_FOLDER"), s.Backup_Folder, s.Library_File);
        }
    }
    s.Art_Folder = s.settings.GetSetting(kFolders, QStringLiteral("Art"), s.paths.Pictures_Folder);
    return readInt(s, kImport, QStringLiteral("Mode"), QStringLiteral("0"), &s.Import_Mode);
}

void Set_Main_Options(AppState& s)
{
    s.options.importModeOption = s.Import_Mode != 0 ? 1 : 0;
    s.options.artFolderText = s.Art_Folder;
    // The Options window shows the library's backup folder; writing it back
    // must give the same value, never a stale one.
    s.options.backupFolderText = s.Backup_Folder;
}

void Save_Main_Settings(AppState& s)
{
    if (s.libraryOpen())
        WritePrivateProfileString(kGeneral, QStringLiteral("BAK_FOLDER"), s.options.backupFolderText, s.Library_File);
    s.settings.SaveSetting(kFolders, QStringLiteral("Art"), s.Art_Folder);
    s.settings.SaveSetting(kImport, QStringLiteral("Mode"), QString::number(s.Import_Mode));
}

std::optional<SettingsError> Get_Startup_Settings(AppState& s)
{
    s.Last_Used_Lib = s.settings.GetSetting(kStartup, QStringLiteral("Last_Used_Lib"), s.Library_File);
    s.Specific_Lib = s.settings.GetSetting(kStartup, QStringLiteral("Specific_Lib"), QString());
    s.Specific_Lib_Copy = s.Specific_Lib;
    return {};
}

void Set_Startup_Options(AppState& s)
{
    s.options.startupOption = s.Startup_Option;
    if (s.Startup_Option == 2) {
        s.options.specificLibEnabled = true;
        s.options.specificLibName = Get_Path_File(s.Specific_Lib);
        return;
    }
    s.options.specificLibEnabled = false;
    if (!s.Specific_Lib.isEmpty() && File_Exists(s.Specific_Lib)) {
        s.options.specificLibName = Get_Path_File(s.Specific_Lib);
    } else {
        s.options.specificLibName.clear();
        s.Specific_Lib.clear();
        s.settings.SaveSetting(kStartup, QStringLiteral("Specific_Lib"), QString());
    }
}

void Save_Startup_Settings(AppState& s)
{
    s.settings.SaveSetting(kStartup, QStringLiteral("Option"), QString::number(s.Startup_Option));
    s.settings.SaveSetting(kStartup, QStringLiteral("Last_Used_Lib"), s.Last_Used_Lib);
    s.settings.SaveSetting(kStartup, QStringLiteral("Specific_Lib"), s.Specific_Lib);
}

std::optional<SettingsError> Get_Rip_Settings(AppState& s)
{
    RipSettings& r = s.Rip;
    const QString data = s.paths.Data_Folder;
    std::optional<SettingsError> e;
    if ((e = readInt(s, kRip, QStringLiteral("Rip_As"), QStringLiteral("0"), &r.Rip_As))) return e;
    if ((e = readInt(s, kRip, QStringLiteral("MP3_Bitrate"), QStringLiteral("8"), &r.MP3_Bitrate))) return e;
    if ((e = readBool(s, kRip, QStringLiteral("MP3_VBR"), QStringLiteral("True"), &r.MP3_VBR))) return e;
    if ((e = readInt(s, kRip, QStringLiteral("MP3_VBR_Quality"), QStringLiteral("0"), &r.MP3_VBR_Quality))) return e;
    if ((e = readInt(s, kRip, QStringLiteral("MP3_Max_VBR"), QStringLiteral("8"), &r.MP3_Max_VBR))) return e;
    if ((e = readBool(s, kRip, QStringLiteral("MP3_Rip_To"), QStringLiteral("True"), &r.MP3_Rip_To))) return e;
    if (!s.libraryOpen())
        r.MP3_Rip_To = false;
    r.MP3_Rip_To_Folder = s.settings.GetSetting(kRip, QStringLiteral("MP3_Rip_To_Folder"), data);
    if ((e = readInt(s, kRip, QStringLiteral("WAV_Bitrate"), QStringLiteral("0"), &r.WAV_Bitrate))) return e;
    if ((e = readInt(s, kRip, QStringLiteral("WAV_Samples"), QStringLiteral("1"), &r.WAV_Samples))) return e;
    if ((e = readInt(s, kRip, QStringLiteral("WAV_Channels"), QStringLiteral("0"), &r.WAV_Channels))) return e;
    r.WAV_Rip_To_Folder = s.settings.GetSetting(kRip, QStringLiteral("WAV_Rip_To_Folder"), data);
    if ((e = readInt(s, kRip, QStringLiteral("WMA_Codecs"), QStringLiteral("0"), &r.WMA_Codecs))) return e;
    if ((e = readInt(s, kRip, QStringLiteral("WMA_Format"), QStringLiteral("0"), &r.WMA_Format))) return e;
    r.WMA_Rip_To_Folder = s.settings.GetSetting(kRip, QStringLiteral("WMA_Rip_To_Folder"), data);
    return {};
}

void Set_Rip_Options(AppState& s)
{
    s.options.rip = s.Rip;
    s.options.chkDestLibrary = s.Rip.MP3_Rip_To;
    s.options.ripAsWmaVisible = s.WMA_Available;
}

void Save_Rip_Settings(AppState& s)
{
    const RipSettings& r = s.Rip;
    auto save = [&](const char* key, const QString& v) { s.settings.SaveSetting(kRip, QLatin1String(key), v); };
    save("Rip_As", QString::number(r.Rip_As));
    save("MP3_Bitrate", QString::number(r.MP3_Bitrate));
    save("MP3_VBR", Bool_Text(r.MP3_VBR));
    save("MP3_VBR_Quality", QString::number(r.MP3_VBR_Quality));
    save("MP3_Max_VBR", QString::number(r.MP3_Max_VBR));
    save("MP3_Rip_To", Bool_Text(s.libraryOpen() && r.MP3_Rip_To));
    save("MP3_Rip_To_Folder", r.MP3_Rip_To_Folder);
    save("WAV_Bitrate", QString::number(r.WAV_Bitrate));
    save("WAV_Samples", QString::number(r.WAV_Samples));
    save("WAV_Channels", QString::number(r.WAV_Channels));
    save("WAV_Rip_To_Folder", r.WAV_Rip_To_Folder);
    save("WMA_Codecs", QString::number(r.WMA_Codecs));
    save("WMA_Format", QString::number(r.WMA_Format));
    save("WMA_Rip_To_Folder", r.WMA_Rip_To_Folder);
}

std::optional<SettingsError> Get_Tag_Settings(AppState& s)
{
    for (int i = 0; i < 14; ++i) {
        if (i <= 2 || i == 5) {
            s.Tag_Options[i] = true;  // forced on, never stored
            continue;
        }
        const QString def = (i == 11 || i == 12) ? QStringLiteral("False") : QStringLiteral("True");
        bool value = true;
        if (auto e = readBool(s, kTag, Tag_Key(i), def, &value))
            return e;
        s.Tag_Options[i] = value;
    }
    return readBool(s, kTag, kReadOther, QStringLiteral("False"), &s.Tag_Read_Other);
}

void Set_Tag_Options(AppState& s)
{
    s.options.tagChecks = s.Tag_Options;
    s.options.tagReadOther = s.Tag_Read_Other;
}

void Save_Tag_Settings(AppState& s)
{
    for (int i = 3; i <= 13; ++i) {
        if (i == 5)
            continue;
        s.settings.SaveSetting(kTag, Tag_Key(i), Bool_Text(s.Tag_Options[i]));
    }
    s.settings.SaveSetting(kTag, kReadOther, Bool_Text(s.Tag_Read_Other));
}

std::optional<SettingsError> Cycle_Main_Settings(AppState& s)
{
    return cycle(s, Get_Main_Settings, [&] { Set_Main_Options(s); Save_Main_Settings(s); });
}

std::optional<SettingsError> Cycle_Startup_Settings(AppState& s)
{
    return cycle(s, Get_Startup_Settings, [&] { Set_Startup_Options(s); Save_Startup_Settings(s); });
}

std::optional<SettingsError> Cycle_Rip_Settings(AppState& s)
{
    return cycle(s, Get_Rip_Settings, [&] { Set_Rip_Options(s); Save_Rip_Settings(s); });
}

std::optional<SettingsError> Cycle_Tag_Settings(AppState& s)
{
    return cycle(s, Get_Tag_Settings, [&] { Set_Tag_Options(s); Save_Tag_Settings(s); });
}

}  // namespace sonorit
