#pragma once
// A user-interface double: records every message, dialog and progress text
// and answers from prepared queues.
#include <QString>
#include <QStringList>
#include <deque>
#include <vector>

#include "shell/ui_port.h"

namespace sonorit::test {

struct RecordedMessage {
    QString text;
    QString title;
    Buttons buttons;
    Icon icon;
    Answer answer;
};

class ScriptedUi : public UiPort {
public:
    std::deque<Answer> answers;          // used in order; afterwards defaultAnswer()
    std::deque<QString> dialogResults;   // file and folder dialogs, in order; "" when empty
    std::vector<RecordedMessage> messages;
    std::vector<FileDialogRequest> fileDialogs;
    int folderDialogs = 0;
    QStringList events;  // "lock", "unlock", "label17:...", "label18:...", "caption:..." ...
    QString caption;
    QString label17, label18;
    int progressMin = 0, progressMax = 0, progressValue = 0;
    int yields = 0;
    bool locked = false;
    bool shielded = false;

    Answer message(const QString& text, const QString& title, Buttons buttons, Icon icon) override
    {
        Answer a;
        if (!answers.empty()) {
            a = answers.front();
            answers.pop_front();
        } else {
            a = buttons == Buttons::YesNo || buttons == Buttons::YesNoCancel ? Answer::No
                : buttons == Buttons::OkCancel ? Answer::Ok : Answer::Ok;
        }
        messages.push_back({text, title, buttons, icon, a});
        events << QStringLiteral("message:") + title;
        return a;
    }
    QString fileDialog(const FileDialogRequest& r) override
    {
        fileDialogs.push_back(r);
        return next();
    }
    QString browseForFolder() override
    {
        ++folderDialogs;
        return next();
    }
    void lockMainWindow() override { locked = true; events << QStringLiteral("lock"); }
    void unlockMainWindow() override { locked = false; events << QStringLiteral("unlock"); }
    void showProgress() override { events << QStringLiteral("showProgress"); }
    void shieldLibrary() override { shielded = true; events << QStringLiteral("shield"); }
    void unshieldLibrary() override { shielded = false; events << QStringLiteral("unshield"); }
    void hideProgress() override { shielded = false; events << QStringLiteral("hideProgress"); }
    void setLabel17(const QString& t) override { label17 = t; events << QStringLiteral("label17:") + t; }
    void setLabel18(const QString& t) override { label18 = t; events << QStringLiteral("label18:") + t; }
    void setProgressRange(int mn, int mx) override { progressMin = mn; progressMax = mx; }
    void setProgressValue(int v) override { progressValue = v; }
    void setCaption(const QString& t) override { caption = t; events << QStringLiteral("caption:") + t; }
    void yield() override { ++yields; }

    QStringList titles() const
    {
        QStringList t;
        for (const auto& m : messages)
            t << m.title;
        return t;
    }

private:
    QString next()
    {
        if (dialogResults.empty())
            return QString();
        QString r = dialogResults.front();
        dialogResults.pop_front();
        return r;
    }
};

}  // namespace sonorit::test
