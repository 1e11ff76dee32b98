#pragma once
// The window's part of the start-up sequence: what Run_Startup asks of Base.
#include "shell/startup.h"

class QTimer;
class QWidget;

namespace sonorit {
struct NamingState;
}

namespace sonorit::ui {

class LibraryController;

class WindowStartupHost : public StartupHost {
public:
    WindowStartupHost(QWidget* window, QWidget* list, QTimer* mainTimer, LibraryController& library,
                      NamingState& naming);

    void showWindow() override;
    void applyDefaultNamingRules() override;
    void checkOpenLibraryFile(const QString& path) override;
    bool wmaAvailable() override;
    void enableTimer() override;
    void focusLibraryList() override;

private:
    QWidget* window_;
    QWidget* list_;
    QTimer* mainTimer_;
    LibraryController& library_;
    NamingState& naming_;
};

}  // namespace sonorit::ui
