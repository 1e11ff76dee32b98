#pragma once
// A user-interface double: records every message, file dialog and label text
// and answers from prepared queues.
#include <QStringList>
#include <deque>
#include <vector>

#include "shell/ui_port.h"

namespace sonorit::test {

struct RecordedMessage {
    QString text, title;
    Buttons buttons;
    Icon icon;
};

class ScriptedUi : public UiPort {
public:
    std::deque<Answer> answers;         // used in order; then No to questions, Ok to the rest
    std::deque<QString> dialogResults;  // file and folder dialogs, in order; then ""
    std::vector<RecordedMessage> messages;
    std::vector<FileDialogRequest> fileDialogs;
    std::deque<QString> inputs;  // input boxes, in order; then the default
    QStringList inputPrompts;    // "prompt|title|default" of each input box
    QStringList events;  // "label17:...", "label18:..."
    QString caption;
    int progressMax = 0;
    bool locked = false, shielded = false;

    Answer message(const QString& text, const QString& title, Buttons buttons, Icon icon) override
    {
        messages.push_back({text, title, buttons, icon});
        const bool question = buttons == Buttons::YesNo || buttons == Buttons::YesNoCancel;
        return !answers.empty() ? take(answers) : question ? Answer::No : Answer::Ok;
    }
    QString fileDialog(const FileDialogRequest& r) override { fileDialogs.push_back(r); return browseForFolder(); }
    QString browseForFolder() override { return dialogResults.empty() ? QString() : take(dialogResults); }
    QString input(const QString& prompt, const QString& title, const QString& defaultText) override
    {
        inputPrompts << prompt + '|' + title + '|' + defaultText;
        return inputs.empty() ? defaultText : take(inputs);
    }
    void lockMainWindow() override { locked = true; }
    void unlockMainWindow() override { locked = false; }
    void shieldLibrary() override { shielded = true; }
    void unshieldLibrary() override { shielded = false; }
    void hideProgress() override { shielded = false; }
    void setLabel17(const QString& t) override { events << "label17:" + t; }
    void setLabel18(const QString& t) override { events << "label18:" + t; }
    void setProgressRange(int, int maximum) override { progressMax = maximum; }
    void setCaption(const QString& t) override { caption = t; }

    QStringList titles() const
    {
        QStringList t;
        for (const auto& m : messages)
            t << m.title;
        return t;
    }

private:
    template <typename T>
    static T take(std::deque<T>& queue)
    {
        T first = queue.front();
        queue.pop_front();
        return first;
    }
};

}  // namespace sonorit::test
