#include "track_removal.h"

#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <unistd.h>

#include "library/naming_commands.h"
#include "library/slots.h"
#include "shell/file_copy.h"
#include "shell/helpers.h"
#include "shell/ui_port.h"

namespace sonorit {

namespace {

const QString kLfCr = QStringLiteral("\n\r");

enum class Family { Remove, Delete, Copy };
enum class Scope { Track, Selection, Album };

std::vector<int> rowsOf(LibraryContext& c, Family family, Scope scope)
{
    const TrackList& list = c.lib.MP3_List;
    if (list.isEmpty() || list.selected() < 0)
        return {};
    switch (scope) {
    case Scope::Track:
        return {list.selected()};
    case Scope::Selection:
        return list.selectedRows();
    case Scope::Album:
        break;
    }
    const QString use = family == Family::Copy ? QStringLiteral("'Copy Track to...'") : QStringLiteral("'Remove Track'");
    return Album_Rows(c, {QStringLiteral("Unknown Album"), QStringLiteral("No Album known for this Track, please use ") + use,
                          QStringLiteral("Unknown Artist/Album"),
                          QStringLiteral("No Artist/Album known for this Track, please use ") + use});
}

QString pathOf(const TrackList& list, int row)
{
    return Add_Backslash(list.field(row, ColFolder)) + list.field(row, ColFilename);
}

QString systemReason(int error)
{
    return QString::fromLocal8Bit(std::strerror(error));
}

// Deletes a track's file, trying five times while serving the queue as a
// file another program holds for a moment may need; 0 or the last errno.
int eraseFile(UiPort& ui, const QString& path)
{
    const QByteArray name = QFile::encodeName(path);
    int error = 0;
    for (int attempt = 0; attempt < 5; ++attempt) {
        if (::unlink(name.constData()) == 0 || errno == ENOENT)
            return 0;
        error = errno;
        ui.yield();
    }
    return error;
}

// The rows go by their IDs, taken before the first removal, so that each
// removal leaves the others found; higher IDs first, so that an album at the
// end of the Trackfile shortens it instead of leaving free slots there.
bool removeRows(LibraryContext& c, const std::vector<int>& rows, bool erase)
{
    TrackList& list = c.lib.MP3_List;
    std::vector<std::pair<int, QString>> ids;
    for (const int row : rows)
        ids.emplace_back(Track_ID_Of(list.field(row, ColID)), list.field(row, ColID));
    std::sort(ids.begin(), ids.end(), [](const auto& a, const auto& b) { return a.first > b.first; });
    const int first = *std::min_element(rows.begin(), rows.end());
    bool allWell = true;
    for (const auto& [number, id] : ids) {
        const int row = list.find(ColID, id);
        if (row < 0)
            continue;
        const QString path = pathOf(list, row);
        const int before = list.count();
        Remove_Track_Row(c, row);
        // A record that could not be taken out keeps its row, and then its
        // file too: a row must not point at nothing.
        if (list.count() == before || !erase)
            continue;
        if (const int error = eraseFile(c.ui, path); error != 0) {
            c.ui.message(QStringLiteral("An error occured whilst trying to erase following track:") + kLfCr + path + kLfCr
                             + QStringLiteral("Error ") + QString::number(error) + QStringLiteral(": ")
                             + systemReason(error),
                         QStringLiteral("Erase error"), Buttons::Ok, Icon::Critical);
            allWell = false;
        }
    }
    // The panels show the row that took the place of the first one removed,
    // or the last row when the removed ones ended the list.
    if (list.isEmpty())
        list.select(-1);
    else
        list.select(std::min(first, list.count() - 1));
    return allWell;
}

// Every copy is complete before it takes its name; the first that fails
// stops the command with the file and the reason, as copies left out in
// silence would make the user believe the folder holds them all.
bool copyRows(LibraryContext& c, const std::vector<int>& rows)
{
    const QString target = Browse_For_Folder(c.ui);
    if (target.isEmpty())
        return true;
    const TrackList& list = c.lib.MP3_List;
    for (const int row : rows) {
        c.ui.yield();
        const QString source = pathOf(list, row);
        const QString copy = Add_Backslash(target) + list.field(row, ColFilename);
        errno = 0;
        if (copyFileKeepingTime(source, copy))
            continue;
        const int error = errno;
        const QString why = !QFileInfo::exists(source) ? QStringLiteral("The track's file does not exist.")
                            : error != 0          ? systemReason(error)
                                                  : QStringLiteral("The copy could not be written.");
        c.ui.message(QStringLiteral("The following track could not be copied:") + kLfCr + source + kLfCr
                         + QStringLiteral("to ") + copy + kLfCr + why,
                     QStringLiteral("Copy failure"), Buttons::Ok, Icon::Warning);
        return false;
    }
    return true;
}

bool run(LibraryContext& c, Family family, Scope scope)
{
    const std::vector<int> rows = rowsOf(c, family, scope);
    if (rows.empty())
        return true;
    if (family == Family::Copy)
        return copyRows(c, rows);
    return removeRows(c, rows, family == Family::Delete);
}

}  // namespace

bool mnu_Library_Remove_MP3(LibraryContext& c) { return run(c, Family::Remove, Scope::Track); }
bool mnu_Library_Remove_Selection(LibraryContext& c) { return run(c, Family::Remove, Scope::Selection); }
bool mnu_Library_Remove_Album(LibraryContext& c) { return run(c, Family::Remove, Scope::Album); }
bool mnu_Tracks_Delete_Track(LibraryContext& c) { return run(c, Family::Delete, Scope::Track); }
bool mnu_Tracks_Delete_Selection(LibraryContext& c) { return run(c, Family::Delete, Scope::Selection); }
bool mnu_Tracks_Delete_Album(LibraryContext& c) { return run(c, Family::Delete, Scope::Album); }
bool mnu_Tracks_Copy_Track(LibraryContext& c) { return run(c, Family::Copy, Scope::Track); }
bool mnu_Tracks_Copy_Selection(LibraryContext& c) { return run(c, Family::Copy, Scope::Selection); }
bool mnu_Tracks_Copy_Album(LibraryContext& c) { return run(c, Family::Copy, Scope::Album); }

}  // namespace sonorit
