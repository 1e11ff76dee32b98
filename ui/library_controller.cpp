#include "library_controller.h"

#include "library/lifecycle.h"
#include "library/naming_commands.h"
#include "library/open_library.h"
#include "library/refresh.h"
#include "library/sort_library.h"
#include "library/track_import.h"
#include "shell/app_state.h"
#include "shell/startup.h"

namespace sonorit::ui {

LibraryController::LibraryController(LibraryContext context, std::function<void()> quit)
    : c_(context), quit_(std::move(quit))
{
}

void LibraryController::newLibrary() { mnu_Library_New(c_); }
void LibraryController::open() { mnu_Library_Open(c_); }
void LibraryController::deleteLibrary() { mnu_Library_Delete(c_); }
void LibraryController::addMp3() { mnu_Library_Add_MP3(c_); }
void LibraryController::scanFolder() { mnu_Library_Scan_Folder(c_); }
void LibraryController::scanTree() { mnu_Library_Scan_Tree(c_); }
void LibraryController::refresh() { mnu_Library_Refresh(c_); }
void LibraryController::sort() { mnu_Library_Sort(c_); }
void LibraryController::renameTrack() { mnu_Library_Rename_Track(c_); }
void LibraryController::renameSelection() { mnu_Library_Rename_Selection(c_); }
void LibraryController::renameAlbum() { mnu_Library_Rename_Album(c_); }
void LibraryController::renameAll() { mnu_Library_Rename_All(c_); }
void LibraryController::relocateTrack() { mnu_Library_Relocate_Track(c_); }
void LibraryController::relocateSelection() { mnu_Library_Relocate_Selection(c_); }
void LibraryController::relocateAlbum() { mnu_Library_Relocate_Album(c_); }
void LibraryController::relocateAll() { mnu_Library_Relocate_All(c_); }

void LibraryController::exit()
{
    Delete_Temporary_Files(c_.app.Data_Folder());
    quit_();
}

void LibraryController::checkOpenLibraryFile(const QString& path) { Check_Open_Library_File(c_, path); }

}  // namespace sonorit::ui
