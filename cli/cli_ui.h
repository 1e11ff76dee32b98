#pragma once
// The command line's user interface: each message box goes to standard error
// as one JSON line with the answer given; answers and dialog results come from
// the options --answers, --answer and --dialog.
#include <QString>
#include <QStringList>
#include <deque>

#include "shell/ui_port.h"

namespace sonorit::cli {

QString jsonString(const QString& text);  // a quoted, escaped JSON string

class CliUi : public UiPort {
public:
    std::deque<QString> answers;   // "yes", "no", "ok", "cancel", used in order
    QString fallbackAnswer;        // --answer; empty: "no" for questions, "ok" otherwise
    std::deque<QString> dialogs;   // --dialog values in order; "" is a cancel

    Answer message(const QString& text, const QString& title, Buttons buttons, Icon icon) override;
    QString fileDialog(const FileDialogRequest& request) override;
    QString browseForFolder() override;

private:
    QString nextDialog();
};

}  // namespace sonorit::cli
