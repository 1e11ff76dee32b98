#include "play_ui.h"

#include "cli/cli_context.h"
#include "cli/json_writer.h"

namespace sonorit::cli {

QString PlayUi::input(const QString& prompt, const QString& title, const QString& defaultText)
{
    QString text = defaultText;
    if (!answers.empty()) {
        text = answers.front();
        answers.pop_front();
    }
    err(JsonObject().add("title", title).add("text", prompt).add("input", text).text() + QLatin1Char('\n'));
    return text;
}

}  // namespace sonorit::cli
