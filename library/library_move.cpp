#include "library_move.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>

#include "library/library_places.h"
#include "library/lifecycle.h"
#include "library/slots.h"
#include "library/sort_library.h"
#include "library/track_journal.h"
#include "library/track_moves.h"
#include "library/trackfile.h"
#include "shell/app_state.h"
#include "shell/durable_file.h"
#include "shell/file_copy.h"
#include "shell/file_stamp.h"
#include "shell/helpers.h"
#include "shell/ini_file.h"
#include "shell/ui_port.h"

namespace sonorit {

namespace {

const QString kLfCr = QStringLiteral("\n\r");
// How many kept files the report names before it only counts the rest.
constexpr int kNamedInReport = 20;

enum class Moved { Done, Kept, Stopped };

QString reasonOf(int error)
{
    return error != 0 ? QString::fromLocal8Bit(std::strerror(error)) : QStringLiteral("Unknown error");
}

// One attempt at moving a file to a name that must not exist yet: a rename
// that refuses to replace, or across file systems a complete copy before the
// source goes. `error` gets errno, EEXIST when the target is taken.
bool moveOnce(const QString& from, const QString& to, int& error)
{
    const QByteArray a = QFile::encodeName(from), b = QFile::encodeName(to);
    if (::renameat2(AT_FDCWD, a.constData(), AT_FDCWD, b.constData(), RENAME_NOREPLACE) == 0)
        return true;
    error = errno;
    if (error != EXDEV && error != EINVAL && error != ENOSYS)
        return false;
    // Across file systems, or one that cannot refuse to replace.
    if (QFileInfo::exists(to) || QFileInfo(to).isSymLink()) {
        error = EEXIST;
        return false;
    }
    errno = 0;
    if (moveFile(from, to))
        return true;
    error = errno;
    return false;
}

// Byte for byte, read in blocks.
bool sameContent(const QString& a, const QString& b)
{
    QFile fa(a), fb(b);
    if (!fa.open(QIODevice::ReadOnly) || !fb.open(QIODevice::ReadOnly) || fa.size() != fb.size())
        return false;
    while (!fa.atEnd()) {
        const QByteArray x = fa.read(1 << 16), y = fb.read(1 << 16);
        if (x.isEmpty() || x != y)
            return false;
    }
    return true;
}

class LibraryMove {
public:
    LibraryMove(LibraryContext& c, QString target)
        : c_(c), oldRoot_(c.app.Library_Main_Folder), newRoot_(std::move(target))
    {
    }

    bool run();

private:
    Moved move(const QString& from, const QString& to);
    bool moveTracks();
    bool arrivedEarlier(int row, const QString& to) const;
    void moveCovers(const QString& from, const QString& to);
    bool moveOtherFiles();
    void removeEmptyFolders();
    void confirm();
    bool pointLibraryAtNewFolder();
    void report();
    void finish();

    LibraryContext& c_;
    const QString oldRoot_, newRoot_;  // both end in "/"
    int moved_ = 0;
    QStringList kept_;  // files left where they were, as the new folder holds their name
    QStringList movedPaths_;
};

// Tries five times, serving the queue, as a busy file may need; then asks
// whether to go on trying. A name that the new folder holds already is never
// replaced: the file stays where it is.
Moved LibraryMove::move(const QString& from, const QString& to)
{
    QDir().mkpath(Get_Path_Folder(to));
    for (;;) {
        int error = 0;
        for (int attempt = 0; attempt < 5; ++attempt) {
            if (!c_.lib.failAt("library-move") && moveOnce(from, to, error))
                return Moved::Done;
            if (error == EEXIST || error == ENOTEMPTY) {
                // A move across file systems killed after its copy was put
                // in place left the file in both: the source may go.
                if (sameContent(from, to) && deleteUntilGone(from, &c_.ui, 5))
                    return Moved::Done;
                kept_ << from;
                return Moved::Kept;
            }
            if (!QFileInfo::exists(from) && !QFileInfo(from).isSymLink())
                return Moved::Kept;  // gone meanwhile: nothing left to move
            c_.ui.yield();
        }
        const Answer again = c_.ui.question(
            QStringLiteral("The following file could not be moved:") + kLfCr + from + kLfCr + QStringLiteral("to ") + to
                + kLfCr + reasonOf(error) + kLfCr + kLfCr + QStringLiteral("Do you want to try again?") + kLfCr
                + QStringLiteral("No stops the move; every file moved so far stays in its new place."),
            QStringLiteral("Move failure"), Buttons::YesNo, Icon::Warning, Answer::Yes);
        if (again != Answer::Yes)
            return Moved::Stopped;
    }
}

bool LibraryMove::arrivedEarlier(int row, const QString& to) const
{
    const FileStamp there = Read_File_Stamp(to);
    const TrackList& list = c_.lib.MP3_List;
    return there.exists && there.changed == list.field(row, ColLastChanged)
           && there.length == list.field(row, ColFilelength);
}

// Covers keep their spelling; a cover the new folder has already stays
// beside its track's old place and is carried along with the other files.
void LibraryMove::moveCovers(const QString& from, const QString& to)
{
    const QStringList names = QDir(from).entryList(QDir::Files | QDir::Hidden | QDir::System);
    for (const char* cover : {"Folder.jpg", "AlbumArtSmall.jpg"}) {
        for (const QString& name : names) {
            if (name.compare(QLatin1String(cover), Qt::CaseInsensitive) != 0)
                continue;
            c_.ui.setLabel18(QStringLiteral("Moving ") + QLatin1String(cover) + QStringLiteral(" to ") + to);
            int error = 0;
            QDir().mkpath(to);
            moveOnce(Add_Backslash(from) + name, Add_Backslash(to) + name, error);
        }
    }
}

// Each track's record is written as its file lands, so that a kill at any
// moment leaves the library pointing at the real places.
bool LibraryMove::moveTracks()
{
    TrackList& list = c_.lib.MP3_List;
    c_.ui.setLabel17(QStringLiteral("Moving current library to ") + newRoot_);
    c_.ui.setLabel18(QString());
    c_.ui.setProgressRange(0, list.count());
    QString former;
    bool go = true;
    Begin_Record_Batch(c_);
    for (int row = 0; row < list.count() && go; ++row) {
        c_.ui.setProgressValue(row + 1);
        c_.ui.yield();
        const QString folder = list.field(row, ColFolder);
        const QString name = list.field(row, ColFilename);
        // A move stopped earlier took this track to the new folder already.
        if (!Folder_Is_Inside(folder, oldRoot_))
            continue;
        const QString target = Folder_Below(folder, oldRoot_, newRoot_);
        QDir().mkpath(target);
        if (row == 0 || folder != former)
            moveCovers(folder, target);
        former = folder;
        const QString from = Add_Backslash(folder) + name;
        const QString to = Add_Backslash(target) + name;
        if (!QFileInfo::exists(from)) {
            // A move killed between a file's rename and its record left the
            // file in its new place; it is known by its date and length.
            if (!arrivedEarlier(row, to))
                continue;
        } else {
            c_.ui.setLabel18(QStringLiteral("Moving Track ") + name + QStringLiteral(" to ") + target);
            switch (move(from, to)) {
            case Moved::Stopped:
                go = false;
                continue;
            case Moved::Kept:
                continue;
            case Moved::Done:
                break;
            }
        }
        list.setField(row, ColFolder, target);
        if (!Replace_Track_Record(c_, Track_ID_Of(list.field(row, ColID)), Join_Track_Record(list.row(row)))) {
            // The file is in its new place and the record still names the
            // old one: the file goes back, so that the library stays true.
            int error = 0;
            if (moveOnce(to, from, error))
                list.setField(row, ColFolder, folder);
            c_.ui.message(QStringLiteral("The library file could not be updated for the following track:") + kLfCr
                              + from + kLfCr + QStringLiteral("The move stops here."),
                          QStringLiteral("Move failure"), Buttons::Ok, Icon::Warning);
            go = false;
            continue;
        }
        if (c_.lib.Playlist_Paths) {
            const int at = c_.lib.Playlist_Paths->indexOf(from);
            if (at >= 0)
                (*c_.lib.Playlist_Paths)[at] = to;
        }
        movedPaths_ << to;
        ++moved_;
    }
    End_Record_Batch(c_);
    return go;
}

// Whatever else the old folder holds (other audio, files never imported,
// playlists, pictures, documents, covers) goes to the same place below the
// new folder. Files of the library itself stay where they are.
bool LibraryMove::moveOtherFiles()
{
    QSet<QString> stay{c_.app.Library_File, c_.app.Trackfile, c_.app.IDfile,
                       Track_Journal_Path(c_.app.Trackfile), c_.app.Trackfile + QStringLiteral(".lock")};
    const TrackList& list = c_.lib.MP3_List;
    for (int row = 0; row < list.count(); ++row)
        stay.insert(Add_Backslash(list.field(row, ColFolder)) + list.field(row, ColFilename));
    // Listed first: a target may lie inside the old folder when the new one
    // is its parent.
    QStringList files;
    QDirIterator it(oldRoot_, QDir::Files | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        if (!stay.contains(path) && !Is_Partial_File_Name(it.fileName()) && !path.startsWith(c_.app.Data_Folder()))
            files << path;
    }
    for (const QString& path : files) {
        c_.ui.yield();
        const QString to = newRoot_ + path.mid(oldRoot_.size());
        c_.ui.setLabel18(QStringLiteral("Moving ") + Get_Path_File(path) + QStringLiteral(" to ") + Get_Path_Folder(to));
        if (move(path, to) == Moved::Stopped)
            return false;
    }
    return true;
}

// Deepest first; a folder that still holds anything stays.
void LibraryMove::removeEmptyFolders()
{
    QStringList folders;
    QDirIterator it(oldRoot_, QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
    while (it.hasNext())
        folders << it.next();
    std::sort(folders.begin(), folders.end(), [](const QString& a, const QString& b) { return a.size() > b.size(); });
    for (const QString& folder : folders)
        QDir().rmdir(folder);
    QDir().rmdir(oldRoot_);
}

// What the new folder holds is never removed; this only shows which of
// the library's tracks stand there now.
void LibraryMove::confirm()
{
    c_.ui.setLabel17(QStringLiteral("Removing non-existing Library tracks from ") + newRoot_);
    c_.ui.setProgressRange(0, int(movedPaths_.size()));
    for (int i = 0; i < movedPaths_.size(); ++i) {
        c_.ui.setProgressValue(i + 1);
        if (QFileInfo::exists(movedPaths_[i]))
            c_.ui.setLabel18(QStringLiteral("Confirming ") + movedPaths_[i]);
    }
}

bool LibraryMove::pointLibraryAtNewFolder()
{
    AppState& a = c_.app;
    a.Library_Main_Folder = newRoot_;
    Write_Library_File(c_);
    if (IniFile(a.Library_File).read(QStringLiteral("GENERAL"), QStringLiteral("LIB_FOLDER"), {}) != newRoot_) {
        a.Library_Main_Folder = oldRoot_;
        c_.ui.message(QStringLiteral("The library file could not be updated with the new location:") + kLfCr
                          + a.Library_File + kLfCr
                          + QStringLiteral("The tracks moved stand in the new location and are listed there."),
                      QStringLiteral("Move failure"), Buttons::Ok, Icon::Warning);
        return false;
    }
    a.Quarantaine_Folder = newRoot_ + QStringLiteral("Quarantaine");
    QDir().mkpath(a.Quarantaine_Folder);
    return true;
}

void LibraryMove::report()
{
    QString text = QString::number(c_.lib.MP3_List.count()) + QStringLiteral(" tracks in Library.") + kLfCr
                   + QString::number(moved_) + QStringLiteral(" tracks moved to ") + newRoot_;
    if (!kept_.isEmpty()) {
        text += kLfCr + kLfCr + QString::number(kept_.size())
                + QStringLiteral(" files stayed where they were, as the new location holds files of their names:");
        for (int i = 0; i < kept_.size() && i < kNamedInReport; ++i)
            text += kLfCr + kept_[i];
        if (kept_.size() > kNamedInReport)
            text += kLfCr + QStringLiteral("and ") + QString::number(kept_.size() - kNamedInReport)
                    + QStringLiteral(" more.");
    }
    c_.ui.message(text, QStringLiteral("Move report"), Buttons::Ok, Icon::None);
}

void LibraryMove::finish()
{
    c_.ui.hideProgress();
    c_.ui.unshieldLibrary();
    c_.ui.setProgressValue(0);
    c_.ui.unlockMainWindow();
}

bool LibraryMove::run()
{
    TrackList& list = c_.lib.MP3_List;
    c_.ui.lockMainWindow();
    Sort_By_Place(list);
    c_.ui.shieldLibrary();
    // Tracks a stopped move took to the new folder stay where they are.
    if (!Check_Track_Locations(c_, newRoot_)) {
        finish();
        return false;
    }
    Sort_By_Place(list);
    const bool whole = moveTracks() && moveOtherFiles();
    if (!whole) {
        finish();
        return false;
    }
    removeEmptyFolders();
    confirm();
    if (!pointLibraryAtNewFolder()) {
        finish();
        return false;
    }
    report();
    mnu_Library_Sort(c_);
    finish();
    return true;
}

}  // namespace

bool mnu_Library_Move(LibraryContext& c)
{
    if (!c.app.libraryOpen())
        return true;
    c.ui.message(QStringLiteral("Please select new location for current library."), QStringLiteral("Info"), Buttons::Ok,
                 Icon::Information);
    const QString chosen = Browse_For_Folder(c.ui);
    if (chosen.isEmpty())
        return true;
    const QString target = Add_Backslash(QDir::cleanPath(chosen));
    if (target.startsWith(c.app.Library_Main_Folder)) {
        c.ui.message(QStringLiteral("The new location cannot be equal to, or a subfolder of the current location!"),
                     QStringLiteral("Library move aborted"), Buttons::Ok, Icon::Critical);
        return true;
    }
    QDir().mkpath(target);
    return LibraryMove(c, target).run();
}

}  // namespace sonorit
