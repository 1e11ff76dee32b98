#include "app_paths.h"

#include <QStandardPaths>

#include "helpers.h"

namespace sonorit {

namespace {
QString withoutTrailingSlash(QString path)
{
    while (path.size() > 1 && path.endsWith(QLatin1Char('/')))
        path.chop(1);
    return path;
}
}  // namespace

AppPaths AppPaths::fromEnvironment(const QString& appDir)
{
    AppPaths p;
    p.App_Path = Add_Backslash(appDir);
    p.Local_AppData_Path =
        Add_Backslash(withoutTrailingSlash(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)));
    p.Data_Folder = p.Local_AppData_Path + QStringLiteral("ZEVSonorit/");
    p.Music_Folder = withoutTrailingSlash(QStandardPaths::writableLocation(QStandardPaths::MusicLocation));
    p.Pictures_Folder = withoutTrailingSlash(QStandardPaths::writableLocation(QStandardPaths::PicturesLocation));
    p.Settings_File = Add_Backslash(withoutTrailingSlash(
                          QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)))
                      + QStringLiteral("ZEVSonorit/ZEVSonorit.ini");
    return p;
}

}  // namespace sonorit
