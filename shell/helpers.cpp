#include "helpers.h"

#include <QElapsedTimer>
#include <QThread>
#include <QFileInfo>
#include <sys/stat.h>

#include "ui_port.h"

namespace sonorit {

QString Get_Path_Folder(const QString& path)
{
    const int cut = path.lastIndexOf(QLatin1Char('/'));
    return cut < 0 ? QString() : path.left(cut);
}

QString Get_Path_File(const QString& path)
{
    const int cut = path.lastIndexOf(QLatin1Char('/'));
    return cut < 0 ? path : path.mid(cut + 1);
}

QString Add_Backslash(const QString& text)
{
    return text.endsWith(QLatin1Char('/')) ? text : text + QLatin1Char('/');
}

bool File_Exists(const QString& path)
{
    // One status query: this runs once per track during a refresh.
    if (path.isEmpty())
        return false;
    struct stat st;
    return ::stat(QFile::encodeName(path).constData(), &st) == 0;
}

static QString twoDigits(long long n)
{
    return QString::number(n).rightJustified(2, QLatin1Char('0'));
}

QString Format_Seconds(long long seconds)
{
    const long long hours = seconds / 3600;
    const long long minutes = (seconds / 60) % 60;
    const long long rest = seconds % 60;
    QString text;
    if (hours > 0)
        text = twoDigits(hours) + QLatin1Char(':');
    return text + twoDigits(minutes) + QLatin1Char(':') + twoDigits(rest);
}

QString Format_Seconds_Short(long long seconds)
{
    return twoDigits((seconds / 60) % 60) + QLatin1Char(':') + twoDigits(seconds % 60);
}

QString Clean_File_Name(const QString& text)
{
    QString out;
    out.reserve(text.size());
    for (const QChar c : text) {
        switch (c.unicode()) {
        case '/': case '\\': case '*': case '<': case '>': case '|': case ':': case '"':
            out += QLatin1Char('_');
            break;
        case '?':
            break;  // dropped on purpose, unlike the others
        default:
            out += c;
        }
    }
    return out;
}

QString Trim(const QString& s)
{
    qsizetype a = 0, b = s.size();
    while (a < b && s[a] == QLatin1Char(' '))
        ++a;
    while (b > a && s[b - 1] == QLatin1Char(' '))
        --b;
    return (a == 0 && b == s.size()) ? s : s.mid(a, b - a);
}

QString Join_Dialog_Selection(const QStringList& paths)
{
    if (paths.isEmpty())
        return QString();
    if (paths.size() == 1)
        return paths.first();
    QStringList parts{Get_Path_Folder(paths.first())};
    for (const QString& p : paths)
        parts << Get_Path_File(p);
    return parts.join(QLatin1Char('|'));
}

QString File_Dialog(UiPort& ui, int mode, const QString& title, const QString& fileName,
                    const QString& filterDescription, const QString& filterPattern,
                    const QString& startFolder, const QString& defaultExtension, bool multiSelect)
{
    FileDialogRequest r;
    r.mode = mode == 2 ? FileDialogMode::Save : FileDialogMode::Open;
    r.title = title;
    r.fileName = fileName;
    r.filterDescription = filterDescription;
    r.filterPattern = filterPattern;
    r.startFolder = startFolder;
    r.defaultExtension = defaultExtension;
    r.multiSelect = multiSelect && r.mode == FileDialogMode::Open;
    return ui.fileDialog(r);
}

QString Browse_For_Folder(UiPort& ui)
{
    QString folder = ui.browseForFolder();
    const int nul = folder.indexOf(QChar(0));
    if (nul >= 0)
        folder.truncate(nul);
    return folder;
}

void Wait_Milliseconds(UiPort& ui, int milliseconds)
{
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < milliseconds) {
        ui.yield();
        QThread::msleep(1);
    }
}

long long Val(const QString& text)
{
    int i = 0;
    const int n = text.size();
    while (i < n && (text[i] == QLatin1Char(' ') || text[i] == QLatin1Char('\t')))
        ++i;
    bool negative = false;
    if (i < n && (text[i] == QLatin1Char('-') || text[i] == QLatin1Char('+'))) {
        negative = text[i] == QLatin1Char('-');
        ++i;
    }
    long long value = 0;
    for (; i < n && text[i].isDigit() && text[i].unicode() < 128; ++i) {
        if (value < 1000000000000LL)
            value = value * 10 + (text[i].unicode() - '0');
    }
    return negative ? -value : value;
}

}  // namespace sonorit
