// sonorit: the window program.
#include <QApplication>

#include "base_window.h"
#include "program_icon.h"
#include "shell/file_type.h"
#include "shell/app_state.h"
#include "shell/session_log.h"
#include "shell/single_instance.h"
#include "shell/startup.h"

using namespace sonorit;

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    QGuiApplication::setDesktopFileName(QStringLiteral("zevsonorit"));
    Install_Program_Icon(ui::Program_Icon_Svg());
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
