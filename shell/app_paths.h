#pragma once
// Where the program finds its folders on this machine. Paths of folders end
// in "/" where the name says "Path" or "Folder" with a trailing slash below.
#include <QString>

namespace sonorit {

struct AppPaths {
    QString App_Path;            // folder of the program file, ends in "/"
    QString Local_AppData_Path;  // $XDG_DATA_HOME or ~/.local/share, ends in "/"
    QString Data_Folder;         // Local_AppData_Path + "ZEVSonorit/"
    QString Music_Folder;        // the user's music folder, no trailing "/"
    QString Pictures_Folder;     // the user's pictures folder, no trailing "/"
    QString Settings_File;       // $XDG_CONFIG_HOME/ZEVSonorit/ZEVSonorit.ini

    // Reads the XDG variables (through QStandardPaths); appDir is the folder of
    // the running program.
    static AppPaths fromEnvironment(const QString& appDir);
};

}  // namespace sonorit
