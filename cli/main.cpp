// sonorit-cli: the program's core without windows, for scripts and tests.
#include <QCoreApplication>
#include <QDir>

#include "cli/cli_context.h"

using namespace sonorit;
using namespace sonorit::cli;

namespace {

int usage()
{
    QString text = QStringLiteral("usage: sonorit-cli [--answers a,b,...] [--answer X] [--dialog VALUE]... VERB ...\n");
    for (const CommandEntry& e : commands())
        text += QStringLiteral("  sonorit-cli ") + e.usage + QLatin1Char('\n');
    err(text);
    return ExitUsage;
}

// Takes the options shared by all commands out of the arguments.
bool takeGlobalOptions(QStringList& args, CliUi& ui)
{
    QStringList rest;
    for (int i = 0; i < args.size(); ++i) {
        QString a = args[i];
        QString value;
        auto takeValue = [&](const QString& name) -> bool {
            if (a == name) {
                if (i + 1 >= args.size())
                    return false;
                value = args[++i];
                return true;
            }
            if (a.startsWith(name + QLatin1Char('='))) {
                value = a.mid(name.size() + 1);
                return true;
            }
            return false;
        };
        if (takeValue(QStringLiteral("--answers"))) {
            for (const QString& v : value.split(QLatin1Char(','), Qt::SkipEmptyParts))
                ui.answers.push_back(v);
        } else if (takeValue(QStringLiteral("--answer"))) {
            ui.fallbackAnswer = value;
        } else if (takeValue(QStringLiteral("--dialog"))) {
            ui.dialogs.push_back(value);
        } else if (a == QLatin1String("--answers") || a == QLatin1String("--answer")
                   || a == QLatin1String("--dialog")) {
            return false;  // an option without its value
        } else {
            rest << a;
        }
    }
    args = rest;
    return true;
}

}  // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QStringList args = app.arguments().mid(1);
    CliUi ui;
    if (!takeGlobalOptions(args, ui) || args.isEmpty())
        return usage();
    const QString verb = args.takeFirst();
    for (const CommandEntry& e : commands()) {
        if (e.verb != verb)
            continue;
        AppState state(AppPaths::fromEnvironment(QCoreApplication::applicationDirPath()));
        QDir().mkpath(state.paths.Data_Folder);
        LibraryState lib;
        CliContext context{state, lib, ui};
        const int rc = e.run(context, args);
        return rc == ExitUsage ? usage() : rc;
    }
    return usage();
}
