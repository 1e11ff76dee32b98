// sonorit: the window program.
#include <QApplication>

#include "base_window.h"
#include "shell/app_state.h"
#include "shell/session_log.h"
#include "shell/single_instance.h"
#include "shell/startup.h"

using namespace sonorit;

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    AppState state(AppPaths::fromEnvironment(QCoreApplication::applicationDirPath()));
    ui::Base base(state);
    SingleInstance instance;  // held until the process ends
    SessionLog log;
    const StartupResult result =
        Run_Startup(state, base.ui(), base.startupHost(), instance, log,
                    Join_Command_Line(QCoreApplication::arguments().mid(1)), QCoreApplication::applicationFilePath());
    if (result != StartupResult::Started)
        return 1;
    return QApplication::exec();
}
