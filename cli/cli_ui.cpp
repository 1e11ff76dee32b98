#include "cli_ui.h"

#include <QFileInfo>
#include <cstdio>
#include <cstdlib>

#include "cli/cli_context.h"

namespace sonorit::cli {

namespace {

const char* buttonsName(Buttons b)
{
    switch (b) {
    case Buttons::Ok: return "ok";
    case Buttons::OkCancel: return "ok_cancel";
    case Buttons::YesNo: return "yes_no";
    case Buttons::YesNoCancel: return "yes_no_cancel";
    }
    return "ok";
}

bool fits(Answer a, Buttons b)
{
    switch (b) {
    case Buttons::Ok: return a == Answer::Ok;
    case Buttons::OkCancel: return a == Answer::Ok || a == Answer::Cancel;
    case Buttons::YesNo: return a == Answer::Yes || a == Answer::No;
    case Buttons::YesNoCancel: return a == Answer::Yes || a == Answer::No || a == Answer::Cancel;
    }
    return false;
}

bool parseAnswer(const QString& text, Answer* out)
{
    const QString t = text.trimmed().toLower();
    if (t == QLatin1String("yes")) *out = Answer::Yes;
    else if (t == QLatin1String("no")) *out = Answer::No;
    else if (t == QLatin1String("ok")) *out = Answer::Ok;
    else if (t == QLatin1String("cancel")) *out = Answer::Cancel;
    else return false;
    return true;
}

const char* answerName(Answer a)
{
    switch (a) {
    case Answer::Yes: return "yes";
    case Answer::No: return "no";
    case Answer::Ok: return "ok";
    case Answer::Cancel: return "cancel";
    }
    return "ok";
}

}  // namespace

bool isAnswerWord(const QString& text)
{
    Answer a;
    return parseAnswer(text, &a);
}

QString jsonString(const QString& text)
{
    QString out = QStringLiteral("\"");
    for (const QChar c : text) {
        switch (c.unicode()) {
        case '"': out += QLatin1String("\\\""); break;
        case '\\': out += QLatin1String("\\\\"); break;
        case '\n': out += QLatin1String("\\n"); break;
        case '\r': out += QLatin1String("\\r"); break;
        case '\t': out += QLatin1String("\\t"); break;
        default:
            if (c.unicode() < 0x20)
                out += QStringLiteral("\\u%1").arg(c.unicode(), 4, 16, QLatin1Char('0'));
            else
                out += c;
        }
    }
    return out + QLatin1Char('"');
}

Answer CliUi::message(const QString& text, const QString& title, Buttons buttons, Icon)
{
    const bool question = buttons == Buttons::YesNo || buttons == Buttons::YesNoCancel;
    Answer answer = question ? Answer::No : Answer::Ok;
    Answer given;
    if (!answers.empty()) {
        if (parseAnswer(answers.front(), &given) && fits(given, buttons))
            answer = given;
        answers.pop_front();
    } else if (!fallbackAnswer.isEmpty() && parseAnswer(fallbackAnswer, &given) && fits(given, buttons)) {
        answer = given;
    }
    const QString line = QStringLiteral("{\"title\":%1,\"text\":%2,\"buttons\":\"%3\",\"answer\":\"%4\"}\n")
                             .arg(jsonString(title), jsonString(text), QLatin1String(buttonsName(buttons)),
                                  QLatin1String(answerName(answer)));
    const QByteArray bytes = line.toUtf8();
    fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), stderr);
    fflush(stderr);
    return answer;
}

void CliUi::giveUp(const QString& text)
{
    reportError(text);
    if (beforeGivingUp)
        beforeGivingUp();
    fflush(stdout);
    fflush(stderr);
    // Leaving from inside the flow skips the destructors of the objects on
    // main's stack. None of them holds anything still to be written: each
    // write to a library file is complete when it returns, and the settings
    // are written as they are saved.
    std::exit(ExitUsage);
}

QString CliUi::nextDialog()
{
    if (dialogs.empty()) {
        // No value left answers as a cancel; but the choice of a new
        // library's Main Folder and the Backup folder loop ask again after a
        // cancel, for ever.
        if (++unanswered_ >= kUnansweredLimit)
            giveUp(QStringLiteral("no --dialog value left for a dialog the command needs"));
        return QString();
    }
    unanswered_ = 0;
    QString value = dialogs.front();
    dialogs.pop_front();
    return value;
}

QString CliUi::fileDialog(const FileDialogRequest& request)
{
    const QString value = nextDialog();
    // Several files come as "folder|name|name", left as they are.
    if (value.isEmpty() || (request.multiSelect && value.contains(QLatin1Char('|'))))
        return value;
    return QFileInfo(value).absoluteFilePath();
}

QString CliUi::browseForFolder()
{
    const QString value = nextDialog();
    if (value.isEmpty())
        return value;
    // A folder dialog gives only folders that exist; a file or a missing
    // folder is refused, not guessed at.
    const QFileInfo folder(value);
    if (!folder.isDir())
        giveUp(QStringLiteral("not an existing folder: ") + folder.absoluteFilePath());
    return folder.absoluteFilePath();
}

}  // namespace sonorit::cli
