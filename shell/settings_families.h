#pragma once
// The settings families Main, Startup, Rip and Tag: each is read, transferred
// to the Options window and written back, in that order, so that after
// start-up every key with a default stands in the store.
#include <QString>
#include <optional>

#include "app_state.h"

namespace sonorit {

// A value that should be a number but is not stops the program; the text
// names the setting and the value.
struct SettingsError {
    QString text;
};

std::optional<SettingsError> Get_Main_Settings(AppState& s);
void Set_Main_Options(AppState& s);
void Save_Main_Settings(AppState& s);

std::optional<SettingsError> Get_Startup_Settings(AppState& s);
void Set_Startup_Options(AppState& s);
void Save_Startup_Settings(AppState& s);

std::optional<SettingsError> Get_Rip_Settings(AppState& s);
void Set_Rip_Options(AppState& s);
void Save_Rip_Settings(AppState& s);

std::optional<SettingsError> Get_Tag_Settings(AppState& s);
void Set_Tag_Options(AppState& s);
void Save_Tag_Settings(AppState& s);

// Read, transfer and write back one family with Options_Loading set around it.
std::optional<SettingsError> Cycle_Main_Settings(AppState& s);
std::optional<SettingsError> Cycle_Startup_Settings(AppState& s);
std::optional<SettingsError> Cycle_Rip_Settings(AppState& s);
std::optional<SettingsError> Cycle_Tag_Settings(AppState& s);

QString Tag_Key(int index);  // "TAG_03" for 3
QString Bool_Text(bool value);  // "True" / "False"

}  // namespace sonorit
