#include "naming_builders.h"

#include <QDir>

#include "shell/app_state.h"
#include "shell/helpers.h"

namespace sonorit {

namespace {

QString prefixFolder(const QString& artist)
{
    const QString cleaned = Clean_File_Name(Trim(artist));
    if (cleaned.isEmpty())
        return QString();
    // The first character's own upper case: "ß" stays "ß" (its upper case
    // "SS" is two characters) and so goes under "_#_".
    const QChar first = cleaned[0].toUpper();
    if (first >= QLatin1Char('0') && first <= QLatin1Char('9'))
        return QStringLiteral("0-9");
    if (first >= QLatin1Char('A') && first <= QLatin1Char('Z'))
        return QString(first);
    return QStringLiteral("_#_");  // by character code, so accented letters too
}

// Each level is made as the name grows; a folder that exists or cannot be
// made passes in silence, and the caller learns of it when the move fails.
// A level named "." or ".." would stay in or leave its folder: its dots are
// replaced as characters a folder name cannot hold are.
void addLevel(QString& path, const QString& level)
{
    const bool onlyDots = level == QLatin1String(".") || level == QLatin1String("..");
    path += QLatin1Char('/') + (onlyDots ? QString(level.size(), QLatin1Char('_')) : level);
    QDir().mkdir(path);
}

// The checked rows of a file-name list, each giving its value, with the
// list's separator between them (none after the last) and ".mp3" behind.
template <typename ValueOf>
QString joinCheckedRows(const NamingRules& rules, int list, ValueOf valueOf, bool trimNames = true)
{
    const auto& rows = rules.fileLists[static_cast<size_t>(list)];
    int remaining = 0;
    for (const DetailRow& row : rows)
        remaining += row.checked ? 1 : 0;
    const QString separator = separatorText(rules.separators[static_cast<size_t>(list)]);
    QString name;
    for (const DetailRow& row : rows) {
        if (!row.checked)
            continue;
        name += valueOf(trimNames ? Trim(row.name) : row.name);
        if (remaining > 1) {
            name += separator;
            --remaining;
        }
    }
    return name + QStringLiteral(".mp3");
}

}  // namespace

QString Make_Track_Folder(const NamingRules& rules, const QString& libraryFolder, int list, const QString& artist,
                          const QString& album, const QString& genre, const QString& year)
{
    QString path = libraryFolder.left(libraryFolder.size() - 1);
    if (list < 2 || list > 3)
        return path;
    if (list == 2 && rules.prefix) {
        const QString prefix = prefixFolder(artist);
        if (!prefix.isEmpty())
            addLevel(path, prefix);
    }
    for (const DetailRow& row : rules.folderLists[static_cast<size_t>(list - 2)]) {
        if (!row.checked)
            continue;
        const QString name = Trim(row.name);
        QString value;
        if (name == QLatin1String("Artist"))
            value = Clean_File_Name(Trim(artist));
        else if (name == QLatin1String("Album"))
            value = Clean_File_Name(Trim(album));
        else if (name == QLatin1String("Genre"))
            value = Clean_File_Name(Trim(genre));
        else if (name == QLatin1String("Year"))
            value = Clean_File_Name(Trim(year));
        else if (name == QLatin1String("Various Artists"))
            value = name;
        if (!value.isEmpty())
            addLevel(path, value);
    }
    return path;
}

QString Make_Track_Folder(LibraryContext& c, int list, const QString& artist, const QString& album,
                          const QString& genre, const QString& year)
{
    return Make_Track_Folder(c.lib.naming.working, c.app.Library_Main_Folder, list, artist, album, genre, year);
}

QString Make_Track_Filename(const NamingRules& rules, int list, int tracknumber, const QString& artist,
                            const QString& album, const QString& title, const QString& genre, const QString& year)
{
    if (list < 0 || list > 1)
        return QStringLiteral(".mp3");
    return joinCheckedRows(rules, list, [&](const QString& detail) {
        if (detail == QLatin1String("Artist"))
            return Clean_File_Name(Trim(artist));
        if (detail == QLatin1String("Album"))
            return Clean_File_Name(Trim(album));
        if (detail == QLatin1String("Title"))
            return Clean_File_Name(Trim(title));
        if (detail == QLatin1String("Genre"))
            return Clean_File_Name(Trim(genre));
        if (detail == QLatin1String("Year"))
            return Clean_File_Name(Trim(year));
        if (detail == QLatin1String("Tracknumber"))
            return QString::number(tracknumber + 1000).right(2);
        return QString();  // a name that is no detail adds nothing but keeps its separator
    });
}

int Track_Number_Of(const QString& column)
{
    bool ok = false;
    const int n = Trim(column).toInt(&ok);
    return ok && n >= -32768 && n <= 32767 ? n : 0;
}

QString MakeNewTrack(LibraryContext& c, int index, int list)
{
    const TrackRow& r = c.lib.MP3_List.row(index);
    return Make_Track_Filename(c.lib.naming.working, list, Track_Number_Of(r[ColTrack]), r[ColArtist], r[ColAlbum],
                               r[ColTitle], r[ColGenre], r[ColYear]);
}

QString MakePreview(const NamingRules& rules, int list)
{
    if (list < 0 || list > 3)
        return QString();
    if (list < 2)
        return joinCheckedRows(rules, list, [](const QString& detail) { return detail; }, false);
    QString preview = QStringLiteral("LIBRARY_FOLDER/");
    if (list == 2 && rules.prefix)
        preview += QStringLiteral("A/");
    for (const DetailRow& row : rules.folderLists[static_cast<size_t>(list - 2)]) {
        if (row.checked)
            preview += Trim(row.name) + QLatin1Char('/');
    }
    return preview;
}

}  // namespace sonorit
