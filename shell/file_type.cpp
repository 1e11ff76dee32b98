#include "file_type.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QSaveFile>
#include <QStandardPaths>

#include "ini_file.h"

namespace sonorit {

const char* const kLibraryMimeType = "application/x-zevsonorit-library";

namespace {

const QString kDesktopName = QStringLiteral("zevsonorit.desktop");

QString dataHome() { return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation); }

// True when the file was (re)written.
bool writeIfDifferent(const QString& path, const QByteArray& content)
{
    QFile old(path);
    if (old.open(QIODevice::ReadOnly) && old.readAll() == content)
        return false;
    old.close();
    QDir().mkpath(QFileInfo(path).absolutePath());
    QSaveFile f(path);
    if (!f.open(QIODevice::WriteOnly) || f.write(content) != content.size())
        return false;
    return f.commit();
}

// Runs only when a file changed, so normally once per installation; waited
// for, so that nothing writes into the user's folders after we return.
void runIfPresent(const QString& program, const QStringList& args)
{
    const QString exe = QStandardPaths::findExecutable(program);
    if (exe.isEmpty())
        return;
    QProcess p;
    p.start(exe, args);
    if (p.waitForStarted(2000) && !p.waitForFinished(5000))
        p.kill();
    p.waitForFinished(1000);
}

}  // namespace

void Register_File_Type(const QString& description, const QString& programPath)
{
    const QString mimeDir = dataHome() + QStringLiteral("/mime");
    const QByteArray xml =
        QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                       "<mime-info xmlns=\"http://www.freedesktop.org/standards/shared-mime-info\">\n"
                       "  <mime-type type=\"%1\">\n"
                       "    <comment>%2</comment>\n"
                       "    <glob pattern=\"*.vkt\"/>\n"
                       "  </mime-type>\n"
                       "</mime-info>\n")
            .arg(QLatin1String(kLibraryMimeType), description.toHtmlEscaped())
            .toUtf8();
    if (writeIfDifferent(mimeDir + QStringLiteral("/packages/zevsonorit-library.xml"), xml))
        runIfPresent(QStringLiteral("update-mime-database"), {mimeDir});

    const QByteArray desktop = QStringLiteral("[Desktop Entry]\n"
                                              "Type=Application\n"
                                              "Name=ZEV's MP3 Sonorit\n"
                                              "Comment=%1\n"
                                              "Exec=\"%2\" %f\n"
                                              "MimeType=%3;\n"
                                              "Icon=zevsonorit\n"
                                              "Categories=AudioVideo;Audio;Player;\n"
                                              "Terminal=false\n")
                                   .arg(description, programPath, QLatin1String(kLibraryMimeType))
                                   .toUtf8();
    const QString appsDir = dataHome() + QStringLiteral("/applications");
    if (writeIfDifferent(appsDir + QLatin1Char('/') + kDesktopName, desktop))
        runIfPresent(QStringLiteral("update-desktop-database"), {appsDir});
}

void Install_Program_Icon(const QByteArray& svg)
{
    const QString path = dataHome() + QStringLiteral("/icons/hicolor/scalable/apps/zevsonorit.svg");
    writeIfDifferent(path, svg);
}

void Associate_Extension(const QString& /*extension*/, const QString& /*typeName*/)
{
    const QString list = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
                         + QStringLiteral("/mimeapps.list");
    const IniFile ini(list, 1 << 20);
    const QString section = QStringLiteral("Default Applications");
    if (ini.read(section, QLatin1String(kLibraryMimeType), QString()) == kDesktopName)
        return;
    QDir().mkpath(QFileInfo(list).absolutePath());
    ini.write(section, QLatin1String(kLibraryMimeType), kDesktopName);
}

}  // namespace sonorit
