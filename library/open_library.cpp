#include "open_library.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "library/library_lock.h"
#include "library/track_journal.h"
#include "library/slots.h"
#include "library/sort_library.h"
#include "library/trackfile.h"
#include "shell/app_state.h"
#include "shell/bounded_read.h"
#include "shell/durable_file.h"
#include "shell/codepage.h"
#include "shell/helpers.h"
#include "shell/ini_file.h"
#include "shell/settings_families.h"
#include "shell/ui_port.h"

namespace sonorit {

namespace {

const QString kGeneral = QStringLiteral("GENERAL");
const QString kCaption = QStringLiteral("ZEV's MP3 Sonorit");
const QString kCrLf = QStringLiteral("\r\n");

QString invalidItemsText(const QStringList& f)
{
    static const char* names[] = {"Artist: ", "Album: ", "Track: ", "Title: ", "Time: ", "Year: ", "Genre: ",
                                  "VA: ", "Folder: ", "Filename: ", "ID: ", "Last Changed: ", "Filelength: "};
    QString text;
    for (int n = 0; n < 13; ++n)
        text += QLatin1String(names[n]) + f[n] + kCrLf;
    for (int n = 13; n < f.size(); ++n)
        text += QStringLiteral("Unknown Item ") + QString::number(n - 12) + QStringLiteral(": ") + f[n] + kCrLf;
    return text + QStringLiteral("\rDo you accept the known items?");
}

TrackRow rowFromFields(const QStringList& f)
{
    TrackRow row;
    row[0] = Trim(f[0]);
    const int last = std::min(12, static_cast<int>(f.size()) - 1);
    for (int n = 1; n <= last; ++n)
        row[n] = (n == 1 || n == 3) ? Trim(f[n]) : f[n];
    return row;
}

// The paths and slot counts of the open library; the caption keeps its name.
void forgetLibrary(LibraryContext& c)
{
    AppState& a = c.app;
    a.Library_File.clear();
    a.Library_File_Name.clear();
    a.Trackfile.clear();
    a.IDfile.clear();
    a.Library_Main_Folder.clear();
    a.Backup_Folder.clear();
    a.Quarantaine_Folder.clear();
    c.lib.ID_COUNT = 0;
    c.lib.Free_IDs.clear();
    c.lib.lastRecord = {};
    c.lib.seen = {};
}

void failureOfOpen(LibraryContext& c, OpenVia via)
{
    AppState& a = c.app;
    c.lib.MP3_List.setHidden(false);
    c.ui.unshieldLibrary();
    c.ui.setProgressValue(0);
    Set_Main_Options(a);
    a.Menu_Refresh_Wanted = true;
    c.ui.unlockMainWindow();
    forgetLibrary(c);
    c.ui.focusLibraryList();
    const QString first = via == OpenVia::Menu
                              ? QStringLiteral("An error occured whilst trying to open the selected Library.")
                              : QStringLiteral("An error occured whilst trying to open the initial Library.");
    const QString text = first + kCrLf + QStringLiteral("Please try again later.") + kCrLf
                         + QStringLiteral("If this error occurs always for this Library,") + kCrLf
                         + QStringLiteral("\nthen most certainly the Library file is corrupt.") + kCrLf
                         + QStringLiteral("If so, you better remove that library.") + kCrLf
                         + QStringLiteral("(menu function 'Library > Delete...')") + kCrLf
                         + QStringLiteral("Then rebuild it again.") + kCrLf
                         + QStringLiteral("(menu function 'Library > New')") + kCrLf;
    c.ui.message(text, QStringLiteral("Open Library Failure"), Buttons::Ok, Icon::Warning);
}

void selectFirst(LibraryContext& c)
{
    c.ui.focusLibraryList();
    if (!c.lib.MP3_List.isEmpty())
        c.lib.MP3_List.select(0);
}

// What reading the records found wrong. An error stops the reading; a
// mismatch keeps reading. Either way the Sort rewrites the library from what
// was read, so the writers, which find a slot by its tag and length, and the
// list, which names a slot by its ID column, agree with the file again.
struct ReadOutcome {
    bool error = false;     // a record cut short by the end of the file
    bool mismatch = false;  // a tag, length or ID column that is not the slot's
    std::vector<bool> used;  // by slot
    qint64 end = 0;          // behind the last slot read
};

// One record at pos: its text and where the next record starts; false when
// the file ends inside it.
bool nextRecord(const QByteArray& file, qint64 pos, int slot, const char** text, qint64* textLength, qint64* next,
                bool* mismatch)
{
    const qint64 size = file.size();
    if (pos + 14 > size)
        return false;
    const char* data = file.constData() + pos;
    const char* nul = static_cast<const char*>(memchr(data + 14, 0, static_cast<size_t>(size - pos - 14)));
    if (!nul)
        return false;
    *text = data + 14;
    *textLength = nul - *text;
    *next = pos + 14 + *textLength + 1;
    const auto* b = reinterpret_cast<const unsigned char*>(data);
    const quint32 length = (quint32(b[10]) << 24) | (quint32(b[11]) << 16) | (quint32(b[12]) << 8) | quint32(b[13]);
    if (length != quint32(*textLength + 1) || QByteArray::fromRawData(data, 10) != Track_Tag(slot))
        *mismatch = true;
    return true;
}

ReadOutcome readRecords(LibraryContext& c, const QByteArray& file, int trackTotal, bool searchInLoop)
{
    TrackList& list = c.lib.MP3_List;
    const int idCount = c.lib.ID_COUNT;
    const qint64 size = file.size();
    ReadOutcome outcome;
    outcome.used.assign(size_t(idCount) + 1, false);
    qint64 pos = 0;
    // Only ID_COUNT records are read: bytes behind them are an old tail that
    // a rewrite left in place.
    for (int i = 1; i <= idCount; ++i) {
        c.ui.setProgressValue(i);
        c.ui.yield();
        if (pos >= size)
            continue;  // beyond the end the slots read as empty
        const char* text = nullptr;
        qint64 textLength = 0;
        qint64 next = 0;
        if (!nextRecord(file, pos, i, &text, &textLength, &next, &outcome.mismatch)) {
            outcome.error = true;
            return outcome;
        }
        pos = next;
        if (textLength == 0)
            continue;  // a free slot
        outcome.used[size_t(i)] = true;
        QStringList fields = decodeFileText(text, textLength).split(QLatin1Char('|'));
        if (fields.size() == TrackColumnCount && fields[ColID] != QStringLiteral("TRACK ") + QString::number(i))
            outcome.mismatch = true;
        bool accept = true;
        if (fields.size() > 13) {
            accept = c.ui.message(invalidItemsText(fields), QStringLiteral("Invalid MP3 Items"), Buttons::YesNo,
                                  Icon::None)
                     == Answer::Yes;
        }
        if (accept) {
            TrackRow row = rowFromFields(fields);
            if (searchInLoop) {
                c.lib.search.Add_Search_Artist(Trim(row[ColArtist]));
                c.lib.search.Add_Search_Album(Trim(row[ColAlbum]));
                c.lib.search.Add_Search_Title(Trim(row[ColTitle]));
            }
            list.append(std::move(row));
        }
        if (i % 25 == 0 || i == idCount) {
            c.ui.setLabel18(QStringLiteral("Importing Track ") + QString::number(i) + QStringLiteral(" from ")
                            + QString::number(trackTotal) + QStringLiteral(": ")
                            + (fields.size() > 9 ? fields[9] : QString()));
        }
    }
    outcome.end = pos;
    return outcome;
}

// Reads the free IDs; false when the IDfile is missing or shorter than the
// counts promise (the missing entries stay 0 and heal later).
bool readFreeIds(LibraryContext& c, int trackTotal)
{
    c.lib.Free_IDs.clear();
    if (c.lib.ID_COUNT <= trackTotal)
        return true;
    const int count = c.lib.ID_COUNT - trackTotal;
    c.lib.Free_IDs.assign(static_cast<size_t>(count), 0);
    QByteArray bytes;
    if (c.app.IDfile.isEmpty() || Read_Regular_File(c.app.IDfile, 32767 * 4, &bytes) != ReadResult::Read)
        return false;
    bytes.truncate(qsizetype(count) * 4);
    for (int k = 0; k < count && (k + 1) * 4 <= bytes.size(); ++k) {
        const auto* b = reinterpret_cast<const unsigned char*>(bytes.constData() + k * 4);
        c.lib.Free_IDs[static_cast<size_t>(k)] =
            static_cast<std::int32_t>(quint32(b[0]) | (quint32(b[1]) << 8) | (quint32(b[2]) << 16) | (quint32(b[3]) << 24));
    }
    return bytes.size() == qint64(count) * 4;
}

// Free IDs that name a used slot, a slot beyond the count or one named twice
// would hand a live track's record to the next import: they go. (Zeros stay:
// they stand for entries an IDfile lacked, and become new slots.)
bool dropImpossibleFreeIds(LibraryContext& c, const std::vector<bool>& used)
{
    std::vector<bool> seen(used.size(), false);
    std::vector<std::int32_t> kept;
    for (const std::int32_t id : c.lib.Free_IDs) {
        const bool valid = id == 0 || (id > 0 && size_t(id) < used.size() && !used[size_t(id)] && !seen[size_t(id)]);
        if (valid && id > 0)
            seen[size_t(id)] = true;
        if (valid)
            kept.push_back(id);
    }
    const bool dropped = kept.size() != c.lib.Free_IDs.size();
    c.lib.Free_IDs = std::move(kept);
    return dropped;
}

// The next slot is appended at the end of the file, so a tail that is never
// read goes before it would be taken for that slot.
void cutOldTail(LibraryContext& c, qint64 end)
{
    QFile f(c.app.Trackfile);
    if (f.open(QIODevice::ReadWrite | QIODevice::ExistingOnly) && f.resize(end))
        Sync_Written(f.handle());
}

// What a killed program left: half-written successors of library files and
// copies (each is locked while written, so a live one stays), and the work
// files of tag writes and sorts once nobody has touched them for a minute.
void removeLeftovers(LibraryContext& c)
{
    Remove_Partial_Files(c.app.Data_Folder());
    Remove_Partial_Files(c.app.Quarantaine_Folder);
    const QDateTime minuteAgo = QDateTime::currentDateTime().addSecs(-60);
    for (const char* name : {"Temp.mp3", "TempTrack.bak", "TempTrack.000", "TempID.bak"}) {
        const QString path = c.app.Data_Folder() + QLatin1String(name);
        const QFileInfo info(path);
        if (info.isFile() && info.lastModified() < minuteAgo)
            QFile::remove(path);
    }
}

}  // namespace

void Close_Library(LibraryContext& c)
{
    AppState& a = c.app;
    c.lib.MP3_List.clear();
    forgetLibrary(c);
    a.Library_Name.clear();
    c.ui.setCaption(kCaption);
}

bool Open_Library(LibraryContext& c, const QString& path, OpenVia via)
{
    AppState& a = c.app;
    TrackList& list = c.lib.MP3_List;
    bool needsSort = false;

    c.ui.lockMainWindow();
    if (!a.Library_File.isEmpty())
        Close_Library(c);
    if (via == OpenVia::Menu) {
        c.lib.ID_COUNT = 0;
        c.lib.Free_IDs.clear();
    }

    a.Library_File = path;
    a.Library_File_Name = Get_Path_File(path);
    a.Library_Data_Folder = Get_Path_Folder(path);
    a.Library_Name = a.Library_File_Name.left(a.Library_File_Name.size() - 4);
    c.ui.setCaption(kCaption + QStringLiteral(" - ") + a.Library_Name);
    a.settings.SaveSetting(QStringLiteral("Folders"), QStringLiteral("Album"), a.Library_Data_Folder);

    const IniFile vkt(path);
    // Only a regular file is a library file: nothing is read from or written
    // over a folder, a pipe or a device of that name.
    if (!QFileInfo(path).isFile()) {
        failureOfOpen(c, via);
        if (via == OpenVia::Menu)
            selectFirst(c);
        return false;
    }
    a.Library_Main_Folder = Add_Backslash(vkt.read(kGeneral, QStringLiteral("LIB_FOLDER"), a.paths.Music_Folder));
    vkt.write(kGeneral, QStringLiteral("LIB_FOLDER"), a.Library_Main_Folder);
    a.Quarantaine_Folder = a.Library_Main_Folder + QStringLiteral("Quarantaine");
    QDir().mkdir(a.Quarantaine_Folder);
    removeLeftovers(c);
    a.Backup_Folder = vkt.read(kGeneral, QStringLiteral("BAK_FOLDER"), QString());
    if (!a.Backup_Folder.isEmpty()) {
        a.Backup_Folder = Add_Backslash(a.Backup_Folder);
        vkt.write(kGeneral, QStringLiteral("BAK_FOLDER"), a.Backup_Folder);
    }
    a.Trackfile = vkt.read(kGeneral, QStringLiteral("ALBUMLIB_NAME"), QString());
    const int trackTotal = static_cast<int>(Val(vkt.read(kGeneral, QStringLiteral("ALBUM_COUNT"), QStringLiteral("0"))));

    const long long idCount = Val(vkt.read(kGeneral, QStringLiteral("ID_COUNT"), QStringLiteral("0")));
    // Slot counts live in 16 bits; a count outside that range means the file
    // cannot be a library of this program, nor can a Trackfile longer than
    // its slots can be, or one that is not a regular file.
    QByteArray records;
    if (a.Trackfile.isEmpty() || idCount < 0 || idCount > 32767
        || Read_Regular_File(a.Trackfile, 32767LL * (14 + 32767), &records) != ReadResult::Read) {
        failureOfOpen(c, via);
        if (via == OpenVia::Menu)
            selectFirst(c);
        return false;
    }
    // The repairs below write the library files; while another program is
    // changing the library they are made in memory only and left for the
    // next opening, so that its change is neither raced nor undone.
    LibraryLock repairLock;
    const bool mayRepair = repairLock.acquire(a.Trackfile, 0);
    // What a killed rename or relocate left in its journal goes into the
    // Trackfile.
    bool replayedInMemory = false;
    QByteArray journal;
    if (Read_Track_Journal(a.Trackfile, &journal)) {
        records = Apply_Track_Journal(records, journal);
        replayedInMemory = !mayRepair || !Write_File_Durably(a.Trackfile, records);
        if (!replayedInMemory)
            QFile::remove(Track_Journal_Path(a.Trackfile));
    }

    a.IDfile = vkt.read(kGeneral, QStringLiteral("FREEID_NAME"), QString());
    c.lib.ID_COUNT = static_cast<int>(idCount);
    if (!readFreeIds(c, std::max(trackTotal, 0)))
        needsSort = mayRepair;

    c.ui.showProgress();
    list.setHidden(true);
    c.ui.shieldLibrary();
    c.ui.setLabel17(QStringLiteral("Reading Library File: ") + path);
    c.ui.setProgressRange(0, via == OpenVia::Menu && c.lib.ID_COUNT == 0 ? 1 : c.lib.ID_COUNT);

    list.beginBulk();
    list.reserve(c.lib.ID_COUNT);
    if (via == OpenVia::Menu)
        c.lib.search.Start_Search_Lists();
    const ReadOutcome read = readRecords(c, records, trackTotal, via == OpenVia::Menu);
    if (read.error || read.mismatch || dropImpossibleFreeIds(c, read.used))
        needsSort = mayRepair;
    else if (read.end < records.size() && mayRepair && !replayedInMemory)
        cutOldTail(c, read.end);

    if (via == OpenVia::Path) {
        c.lib.search.Start_Search_Lists();
        if (!list.isEmpty()) {
            c.ui.setProgressRange(0, list.count());
            c.ui.setProgressValue(0);
            c.ui.setLabel17(QStringLiteral("Collecting Search Info: "));
            for (int i = 0; i < list.count(); ++i) {
                c.ui.setProgressValue(i + 1);
                c.ui.setLabel18(list.field(i, ColFilename));
                c.lib.search.Add_Search_Artist(Trim(list.field(i, ColArtist)));
                c.lib.search.Add_Search_Album(Trim(list.field(i, ColAlbum)));
                c.lib.search.Add_Search_Title(Trim(list.field(i, ColTitle)));
            }
            list.select(0);
        }
    }
    list.sortByColumn(ColFilename);
    list.sortByColumn(ColFolder);
    list.endBulk();

    Read_Transfer_Save_Naming_Rules(c.lib.naming, a.Library_File);
    list.setHidden(false);
    c.ui.unshieldLibrary();

    if (!a.Library_File.isEmpty() && File_Exists(a.Library_File)) {
        a.Last_Used_Lib = a.Library_File;
        a.settings.SaveSetting(QStringLiteral("Startup"), QStringLiteral("Last_Used_Lib"), a.Last_Used_Lib);
    }
    if (via == OpenVia::Menu) {
        Set_Main_Options(a);
        a.Menu_Refresh_Wanted = true;
    }
    c.ui.unlockMainWindow();
    selectFirst(c);
    if (needsSort)
        mnu_Library_Sort(c);
    Note_Library_Seen(c);
    return true;
}

bool mnu_Library_Open(LibraryContext& c)
{
    AppState& a = c.app;
    if (a.Library_Data_Folder.isEmpty())
        a.Library_Data_Folder = Get_Path_Folder(a.paths.App_Path);
    const QString path =
        File_Dialog(c.ui, 1, QStringLiteral("Open Library"), QString(),
                    QStringLiteral("ZEV's MP3 Sonorit Library Files (*.vkt)"), QStringLiteral("*.vkt"),
                    a.Library_Data_Folder, QStringLiteral("vkt"), false);
    if (path.isEmpty() || !File_Exists(path) || !path.endsWith(QLatin1String(".vkt"))) {
        selectFirst(c);
        return false;
    }
    return Open_Library(c, path, OpenVia::Menu);
}

void Check_Open_Library_File(LibraryContext& c, const QString& path)
{
    if (!path.isEmpty() && File_Exists(path) && path.right(4) == QLatin1String(".vkt"))
        Open_Library(c, path, OpenVia::Path);
    else
        c.app.Library_File.clear();
}

int MP3Find(TrackList& list, const QString& text, int where, int startMode)
{
    auto matches = [&](int i) {
        if (where == 0)
            return list.field(i, ColArtist).compare(text, Qt::CaseInsensitive) == 0;
        for (int col = 1; col < TrackColumnCount; ++col) {
            if (list.field(i, col).compare(text, Qt::CaseInsensitive) == 0)
                return true;
        }
        return false;
    };
    const int start = startMode != 1 ? std::max(list.selected(), 0) : 0;
    int found = -1;
    for (int i = start; i < list.count() && found < 0; ++i) {
        if (matches(i))
            found = i;
    }
    if (found < 0 && startMode == 2) {
        for (int i = 0; i < list.count() && found < 0; ++i) {
            if (matches(i))
                found = i;
        }
    }
    list.select(found >= 0 ? found : 0);
    return found;
}

}  // namespace sonorit
