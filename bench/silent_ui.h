#pragma once
// A user interface for benchmarks that records nothing: every question is
// answered No unless answers are queued, every other box Ok, every dialog
// from a queue, so that only the program's own work is timed.
#include <QString>
#include <deque>

#include "shell/ui_port.h"

namespace sonorit::bench {

class SilentUi : public UiPort {
public:
    std::deque<Answer> answers;
    std::deque<QString> dialogs;
    int messages = 0;

    Answer message(const QString&, const QString&, Buttons buttons, Icon) override
    {
        ++messages;
        if (!answers.empty()) {
            const Answer a = answers.front();
            answers.pop_front();
            return a;
        }
        return buttons == Buttons::YesNo || buttons == Buttons::YesNoCancel ? Answer::No : Answer::Ok;
    }
    QString fileDialog(const FileDialogRequest&) override { return browseForFolder(); }
    QString browseForFolder() override
    {
        if (dialogs.empty())
            return QString();
        const QString d = dialogs.front();
        dialogs.pop_front();
        return d;
    }
};

}  // namespace sonorit::bench
