#pragma once
// The command line's user interface: each message box goes to standard error
// as one JSON line with the answer given; answers and dialog results come from
// the options --answers, --answer and --dialog.
#include <QString>
#include <QStringList>
#include <deque>
#include <functional>

#include "shell/ui_port.h"

namespace sonorit::cli {

QString jsonString(const QString& text);  // a quoted, escaped JSON string
// "yes", "no", "ok" or "cancel", in any case: the words --answer takes.
bool isAnswerWord(const QString& text);

class CliUi : public UiPort {
public:
    // Dialogs in a row that found no --dialog value left; then the program
    // stops, as a flow that insists on an answer would never end.
    static constexpr int kUnansweredLimit = 20;

    std::deque<QString> answers;   // "yes", "no", "ok", "cancel", used in order
    QString fallbackAnswer;        // --answer; empty: "no" for questions, "ok" otherwise
    std::deque<QString> dialogs;   // --dialog values in order; "" is a cancel.
                                   // A non-empty value is made absolute, as a dialog answers.
    std::function<void()> beforeGivingUp;  // tidies up what the stopped flow leaves half done

    Answer message(const QString& text, const QString& title, Buttons buttons, Icon icon) override;
    QString fileDialog(const FileDialogRequest& request) override;
    QString browseForFolder() override;

private:
    QString nextDialog();
    [[noreturn]] void giveUp(const QString& text);

    int unanswered_ = 0;
};

}  // namespace sonorit::cli
