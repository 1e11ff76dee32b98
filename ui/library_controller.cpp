#include "library_controller.h"

#include "library/library_lock.h"
#include "library/backup.h"
#include "library/lifecycle.h"
#include "library/library_move.h"
#include "library/naming_commands.h"
#include "library/open_library.h"
#include "library/refresh.h"
#include "library/sort_library.h"
#include "library/track_import.h"
#include "library/track_removal.h"
#include "shell/app_state.h"
#include "shell/startup.h"

namespace sonorit::ui {

LibraryController::LibraryController(LibraryContext context, std::function<void()> quit)
    : c_(context), quit_(std::move(quit))
{
}

// Each change holds the library's lock while it runs.
void LibraryController::locked(void (*command)(LibraryContext&))
{
    With_Library_Lock(c_, [&] { command(c_); });
}

void LibraryController::locked(bool (*command)(LibraryContext&))
{
    With_Library_Lock(c_, [&] { command(c_); });
}

void LibraryController::newLibrary() { mnu_Library_New(c_); }
void LibraryController::open() { mnu_Library_Open(c_); }
void LibraryController::deleteLibrary() { mnu_Library_Delete(c_); }
void LibraryController::addMp3() { locked(&mnu_Library_Add_MP3); }
void LibraryController::scanFolder() { locked(&mnu_Library_Scan_Folder); }
void LibraryController::scanTree() { locked(&mnu_Library_Scan_Tree); }
void LibraryController::refresh()
{
    With_Library_Lock(c_, [&] { mnu_Library_Refresh(c_); });
}
void LibraryController::sort() { locked(&mnu_Library_Sort); }
void LibraryController::renameTrack() { locked(&mnu_Library_Rename_Track); }
void LibraryController::renameSelection() { locked(&mnu_Library_Rename_Selection); }
void LibraryController::renameAlbum() { locked(&mnu_Library_Rename_Album); }
void LibraryController::renameAll() { locked(&mnu_Library_Rename_All); }
void LibraryController::relocateTrack() { locked(&mnu_Library_Relocate_Track); }
void LibraryController::relocateSelection() { locked(&mnu_Library_Relocate_Selection); }
void LibraryController::relocateAlbum() { locked(&mnu_Library_Relocate_Album); }
void LibraryController::relocateAll() { locked(&mnu_Library_Relocate_All); }
void LibraryController::move() { locked(&mnu_Library_Move); }
void LibraryController::backup()
{
    locked(&mnu_Library_Backup);
    c_.app.Menu_Refresh_Wanted = true;  // Restore follows a backup folder chosen now
}
void LibraryController::restore() { locked(&mnu_Library_Restore); }
void LibraryController::removeTrack() { locked(&mnu_Library_Remove_MP3); }
void LibraryController::removeSelection() { locked(&mnu_Library_Remove_Selection); }
void LibraryController::removeAlbum() { locked(&mnu_Library_Remove_Album); }
void LibraryController::deleteTrack() { locked(&mnu_Tracks_Delete_Track); }
void LibraryController::deleteSelection() { locked(&mnu_Tracks_Delete_Selection); }
void LibraryController::deleteAlbum() { locked(&mnu_Tracks_Delete_Album); }
void LibraryController::copyTrack() { locked(&mnu_Tracks_Copy_Track); }
void LibraryController::copySelection() { locked(&mnu_Tracks_Copy_Selection); }
void LibraryController::copyAlbum() { locked(&mnu_Tracks_Copy_Album); }

void LibraryController::exit()
{
    Delete_Temporary_Files(c_.app.Data_Folder());
    quit_();
}

void LibraryController::checkOpenLibraryFile(const QString& path) { Check_Open_Library_File(c_, path); }

}  // namespace sonorit::ui
