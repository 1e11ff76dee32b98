#include "library_controller.h"

#include "library/open_library.h"
#include "library/sort_library.h"
#include "shell/app_state.h"
#include "shell/startup.h"

namespace sonorit::ui {

LibraryController::LibraryController(LibraryContext context, std::function<void()> quit)
    : c_(context), quit_(std::move(quit))
{
}

void LibraryController::open() { mnu_Library_Open(c_); }
void LibraryController::sort() { mnu_Library_Sort(c_); }

void LibraryController::exit()
{
    Delete_Temporary_Files(c_.app.Data_Folder());
    quit_();
}

void LibraryController::checkOpenLibraryFile(const QString& path) { Check_Open_Library_File(c_, path); }

}  // namespace sonorit::ui
