#include "startup_host.h"

#include "platform/gstreamer/gst_encoders.h"

#include <QTimer>
#include <QWidget>

#include "library/naming_rules.h"
#include "library_controller.h"

namespace sonorit::ui {

WindowStartupHost::WindowStartupHost(QWidget* window, QWidget* list, QTimer* mainTimer, LibraryController& library,
                                     NamingState& naming)
    : window_(window), list_(list), mainTimer_(mainTimer), library_(library), naming_(naming)
{
}

void WindowStartupHost::showWindow() { window_->show(); }
void WindowStartupHost::applyDefaultNamingRules() { Apply_Default_Naming_Rules(naming_); }
void WindowStartupHost::checkOpenLibraryFile(const QString& path) { library_.checkOpenLibraryFile(path); }
void WindowStartupHost::enableTimer() { mainTimer_->start(); }
void WindowStartupHost::focusLibraryList() { list_->setFocus(); }

bool WindowStartupHost::wmaAvailable()
{
    return Wma_Encoder_Available();
}

}  // namespace sonorit::ui
