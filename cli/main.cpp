// sonorit-cli: the program's core without windows, for scripts and tests.
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <optional>

#include "cli/cli_context.h"
#include "shell/settings_families.h"

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

// The tag verbs work on the files they are given alone: they start without
// the application object and leave the data folder to the step that needs it.
bool isTagVerb(const QString& verb)
{
    for (const char* v : {"tags", "write-tag1", "write-tag2", "retag", "strip"}) {
        if (verb == QLatin1String(v))
            return true;
    }
    return false;
}

// Verbs whose input boxes take their texts from --answers.
bool takesTypedAnswers(const QString& verb)
{
    return verb == QLatin1String("play") || verb == QLatin1String("tag-selection");
}

// Verbs for which an empty item of --answers ("19a9,,") is an empty input;
// the others pass over empty items.
bool keepsEmptyAnswers(const QString& verb) { return verb == QLatin1String("tag-selection"); }

// The folder of the running program, as the application object would tell it.
QString programFolder()
{
    return QFileInfo(QFileInfo(QStringLiteral("/proc/self/exe")).canonicalFilePath()).path();
}

// Takes the options shared by all commands out of the arguments. False with
// `problem` set for an answer word that is none, with it empty for a missing
// value.
bool takeGlobalOptions(QStringList& args, CliUi& ui, QString& problem)
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
        const auto checked = [&](const QString& word) {
            if (!isAnswerWord(word))
                problem = QStringLiteral("\"%1\" is no answer: give yes, no, ok or cancel").arg(word);
            return problem.isEmpty();
        };
        if (takeValue(QStringLiteral("--answers"))) {
            // Checked once the verb is known: input boxes take any text.
            for (const QString& v : value.split(QLatin1Char(',')))
                ui.answers.push_back(v);
        } else if (takeValue(QStringLiteral("--answer"))) {
            if (!checked(value))
                return false;
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
    QStringList args;
    for (int i = 1; i < argc; ++i)
        args << QString::fromLocal8Bit(argv[i]);
    CliUi ui;
    QString problem;
    if (!takeGlobalOptions(args, ui, problem) || args.isEmpty()) {
        if (!problem.isEmpty())
            reportError(problem);
        return usage();
    }
    const QString verb = args.takeFirst();
    if (!keepsEmptyAnswers(verb))
        ui.answers.erase(std::remove(ui.answers.begin(), ui.answers.end(), QString()), ui.answers.end());
    if (!takesTypedAnswers(verb)) {
        for (const QString& v : ui.answers) {
            if (!isAnswerWord(v)) {
                reportError(QStringLiteral("\"%1\" is no answer: give yes, no, ok or cancel").arg(v));
                return usage();
            }
        }
    }
    for (const CommandEntry& e : commands()) {
        if (e.verb != verb)
            continue;
        const bool tagVerb = isTagVerb(verb);
        std::optional<QCoreApplication> app;
        if (!tagVerb)
            app.emplace(argc, argv);
        AppState state(AppPaths::fromEnvironment(tagVerb ? programFolder() : QCoreApplication::applicationDirPath()));
        if (!tagVerb) {
            QDir().mkpath(state.paths.Data_Folder);
            // Tracks read by the library and the player honour the tag
            // settings too; a bad value there is the tag verbs' to report.
            Get_Tag_Settings(state);
        }
        LibraryState lib;
        CliContext context{state, lib, ui};
        const int rc = e.run(context, args);
        return rc == ExitUsage ? usage() : rc;
    }
    return usage();
}
