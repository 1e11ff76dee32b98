#include "playlist_files.h"

#include <QCoreApplication>
#include <QFile>
#include <QSaveFile>

#include "playback/playlist_model.h"
#include "shell/codepage.h"
#include "shell/file_copy.h"
#include "shell/helpers.h"
#include "tags/mpeg_info.h"

namespace sonorit {

namespace {
const QString kFilter = QStringLiteral("ZEV's MP3 Sonorit Playlist Files (*.m3u)");
const QString kInfo = QStringLiteral("#ZEVINF:");
const QString kSplit = QStringLiteral(" | ");
constexpr int kYieldEvery = 32;

// Lines end in CR LF, LF or CR alone; a last line without an end counts.
std::vector<QByteArray> splitLines(const QByteArray& bytes)
{
    std::vector<QByteArray> lines;
    qsizetype start = 0;
    const qsizetype n = bytes.size();
    for (qsizetype i = 0; i < n; ++i) {
        const char ch = bytes[i];
        if (ch != '\r' && ch != '\n')
            continue;
        lines.push_back(bytes.mid(start, i - start));
        if (ch == '\r' && i + 1 < n && bytes[i + 1] == '\n')
            ++i;
        start = i + 1;
    }
    if (start < n)
        lines.push_back(bytes.mid(start));
    return lines;
}

bool goodTrack(const QString& path)
{
    return Is_Good_Track(path);
}

bool acceptableList(const QString& path)
{
    return !path.isEmpty() && File_Exists(path) && path.endsWith(QLatin1String(".m3u"));
}

bool readList(const QString& path, QByteArray& bytes)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return false;
    bytes = f.readAll();
    return f.error() == QFileDevice::NoError;
}
}  // namespace

QString Decode_Playlist_Line(const QByteArray& line)
{
    return decodeFileText(line);
}

QString Resolve_Playlist_Entry(const QString& line, const QString& folder)
{
    QString s = line;
    s.replace(QLatin1Char('\\'), QLatin1Char('/'));
    if (s.startsWith(QLatin1Char('/')))
        return s;
    const bool drive = s.size() >= 3 && s[0].isLetter() && s[0].unicode() < 128 && s[1] == QLatin1Char(':')
        && s[2] == QLatin1Char('/');
    if (!drive)
        return Add_Backslash(folder) + s;
    // A list of the Windows program: the same path from the root, or else the
    // tail of the path under the list's own folder, longest tail first.
    const QString rooted = s.mid(2);
    if (File_Exists(rooted))
        return rooted;
    const QStringList parts = rooted.split(QLatin1Char('/'), Qt::SkipEmptyParts);
    for (int i = 0; i < parts.size(); ++i) {
        const QString candidate = Add_Backslash(folder) + parts.mid(i).join(QLatin1Char('/'));
        if (File_Exists(candidate))
            return candidate;
    }
    return rooted;
}

ParsedPlaylist Parse_Playlist(const QByteArray& bytes, const QString& folder)
{
    ParsedPlaylist list;
    const std::vector<QByteArray> lines = splitLines(bytes);
    size_t i = 0;
    if (!lines.empty()) {
        QString first = Decode_Playlist_Line(lines[0]);
        if (first.startsWith(QChar(0xFEFF)))
            first.remove(0, 1);
        if (first == QLatin1String("#EXTM3U")) {
            list.dialect = PlaylistDialect::Extended;
            i = 1;
        } else if (first == QLatin1String("#ZEVM3U")) {
            list.dialect = PlaylistDialect::Own;
            i = 1;
        }
    }
    for (; i < lines.size(); ++i) {
        const QString line = Decode_Playlist_Line(lines[i]);
        PlaylistItem item;
        if (list.dialect == PlaylistDialect::Own) {
            if (!line.startsWith(kInfo))
                continue;
            // No escaping: a column holding " | " shifts the rest.
            const QStringList parts = line.mid(kInfo.size()).split(kSplit);
            item.hasInfo = true;
            for (int col = 0; col < PlayColumnCount; ++col)
                item.info[col] = parts.value(col);
            if (i + 1 < lines.size()) {
                ++i;
                item.hasPath = true;
                item.path = Resolve_Playlist_Entry(Decode_Playlist_Line(lines[i]), folder);
            }
        } else {
            if (line.startsWith(QLatin1Char('#')) || line.startsWith(QLatin1String("http:"))
                || line.startsWith(QLatin1String("www.")))
                continue;
            item.hasPath = true;
            item.path = Resolve_Playlist_Entry(line, folder);
        }
        list.items.push_back(std::move(item));
    }
    return list;
}

QByteArray Playlist_Bytes(const PlaybackState& s)
{
    QString text = QStringLiteral("#ZEVM3U\r\n");
    for (int i = 1; i <= s.PlayList_Count; ++i) {
        const PlayRow row = i <= s.Play_List.count() ? s.Play_List.row(i - 1) : PlayRow{};
        text += kInfo + row[PlayArtist] + kSplit + row[PlayAlbum] + kSplit + row[PlayTitle] + kSplit + row[PlayTime]
            + QStringLiteral("\r\n") + s.playFile(i) + QStringLiteral("\r\n");
    }
    return text.toUtf8();
}

PlaylistFiles::PlaylistFiles(PlaylistCommands& commands) : commands_(commands), c_(commands.player().context()) {}

void PlaylistFiles::rememberFile(const QString& path)
{
    c_.play.Playlist_File = path;
    c_.play.Playlist_Name = Get_Path_File(path);
    c_.app.Playlist_Data_Folder = Get_Path_Folder(path);
    c_.app.settings.SaveSetting(QStringLiteral("Folders"), QStringLiteral("Playlists"), c_.app.Playlist_Data_Folder);
}

QString PlaylistFiles::askForList()
{
    QString start = c_.app.Playlist_Data_Folder;
    if (start.isEmpty() && QCoreApplication::instance())
        start = QCoreApplication::applicationDirPath();
    return File_Dialog(c_.ui, 1, QStringLiteral("Open Playlist"), QString(), kFilter, QStringLiteral("*.m3u"), start,
                       QStringLiteral("m3u"), false);
}

void PlaylistFiles::mnu_PlayList_Open()
{
    const QString path = askForList();
    if (acceptableList(path))
        openFile(path, true);
}

bool PlaylistFiles::openFile(const QString& path, bool play)
{
    QByteArray bytes;
    if (!acceptableList(path) || !readList(path, bytes))
        return false;
    PlaybackState& s = c_.play;
    s.PlayList_Busy = true;
    c_.view.setPlayListShielded(true);
    commands_.mnu_PlayList_Clear();
    rememberFile(path);

    const ParsedPlaylist list = Parse_Playlist(bytes, c_.app.Playlist_Data_Folder);
    const bool own = list.dialect == PlaylistDialect::Own;
    QString last;
    s.Play_List.beginBulk();
    int n = 0;
    for (const PlaylistItem& item : list.items) {
        if (++n % kYieldEvery == 0)
            c_.ui.yield();
        if (own && item.hasInfo)
            s.Play_List.append(item.info);
        if (!item.hasPath)
            continue;
        last = item.path;
        if (goodTrack(item.path))
            commands_.Add_Track_To_Array(item.path);
    }
    s.Play_List.endBulk();

    if (s.PlayList_Count >= 1 && play) {
        s.PlayList_Pos = 1;
        commands_.player().Play_Track();
        c_.ui.yield();
    }
    if (!own) {
        // The rows of a foreign list come from the tags of its files.
        s.Play_List.beginBulk();
        for (int i = 1; i <= s.PlayList_Count; ++i) {
            s.Play_List.append(commands_.readEntryRow(s.playFile(i)));
            if (i % kYieldEvery == 0)
                c_.ui.yield();
        }
        s.Play_List.endBulk();
    }
    if (!last.isEmpty() && last == s.Now_Source) {
        const int index = s.currentEntry();
        commands_.PlayFind(index);
        if (index >= 1 && index <= s.Play_List.count()) {
            s.Now_Artist = s.Play_List.field(index - 1, PlayArtist);
            s.Now_Album = s.Play_List.field(index - 1, PlayAlbum);
        }
    }
    c_.view.setPlayListShielded(false);
    s.PlayList_Busy = false;
    c_.requestMenuRefresh();
    return true;
}

void PlaylistFiles::mnu_PlayList_Save()
{
    if (c_.play.Playlist_File.isEmpty() || !File_Exists(c_.play.Playlist_File)) {
        mnu_PlayList_Save_As();
        return;
    }
    saveTo(c_.play.Playlist_File, false);
}

void PlaylistFiles::mnu_PlayList_Save_As()
{
    QString start = c_.app.Playlist_Data_Folder;
    if (start.isEmpty() && QCoreApplication::instance())
        start = QCoreApplication::applicationDirPath();
    const QString path = File_Dialog(c_.ui, 2, QStringLiteral("Save Playlist As"), QString(), kFilter,
                                     QStringLiteral("*.m3u"), start, QStringLiteral("m3u"), false);
    if (!path.isEmpty())
        saveTo(path, true);
}

bool PlaylistFiles::saveTo(const QString& path, bool remember)
{
    if (remember)
        rememberFile(path);
    QSaveFile f(path);
    if (!f.open(QIODevice::WriteOnly))
        return false;
    const QByteArray bytes = Playlist_Bytes(c_.play);
    if (f.write(bytes) != bytes.size()) {
        f.cancelWriting();
        return false;
    }
    return f.commit();
}

void PlaylistFiles::mnu_Playlist_Merge()
{
    if (c_.play.PlayList_Count == 0)
        return;
    const Answer a = c_.ui.message(
        QStringLiteral("This will let you open a previously saved playlist and merge it with the current playlist.\r\n"
                       "Proceed with this action?"),
        QStringLiteral("Merging Playlists"), Buttons::YesNo, Icon::Question);
    if (a != Answer::Yes)
        return;
    const QString path = askForList();
    if (acceptableList(path))
        mergeFile(path);
}

bool PlaylistFiles::mergeFile(const QString& path)
{
    QByteArray bytes;
    if (!acceptableList(path) || !readList(path, bytes))
        return false;
    PlaybackState& s = c_.play;
    s.PlayList_Busy = true;
    c_.view.setPlayListShielded(true);
    const ParsedPlaylist list = Parse_Playlist(bytes, Get_Path_Folder(path));
    int n = 0;
    for (const PlaylistItem& item : list.items) {
        if (++n % kYieldEvery == 0)
            c_.ui.yield();
        // An entry of the own dialect gets two rows: its information line's
        // and the one its tag makes.
        if (item.hasInfo)
            s.Play_List.append(item.info);
        if (item.hasPath && goodTrack(item.path))
            commands_.Add_Entree_To_PlayList(item.path);
    }
    if (!s.Playlist_File.isEmpty())
        mnu_PlayList_Save();
    c_.view.setPlayListShielded(false);
    s.PlayList_Busy = false;
    c_.requestMenuRefresh();
    return true;
}

void PlaylistFiles::mnu_PlayList_Export()
{
    if (c_.play.PlayList_Count == 0)
        return;
    const QString folder = Browse_For_Folder(c_.ui);
    if (folder.isEmpty())
        return;
    c_.view.setExportEnabled(false);
    exportTo(folder);
    c_.view.setExportEnabled(true);
}

int PlaylistFiles::exportTo(const QString& folder)
{
    int copied = 0;
    for (int i = 1; i <= c_.play.PlayList_Count; ++i) {
        const QString source = c_.play.playFile(i);
        if (copyFileKeepingTime(source, Add_Backslash(folder) + Get_Path_File(source)))
            ++copied;
        c_.ui.yield();
    }
    return copied;
}

}  // namespace sonorit
