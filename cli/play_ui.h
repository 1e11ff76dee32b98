#pragma once
// The command line's answers for the play verb: besides the message boxes,
// the input boxes that ask for a WAV or WMA file's artist, album and title
// take the next --answers value, or their default when none is left. Each
// box goes to standard error as one JSON line with the text it got.
#include "cli/cli_ui.h"

namespace sonorit::cli {

class PlayUi : public CliUi {
public:
    explicit PlayUi(const CliUi& given) : CliUi(given) {}
    QString input(const QString& prompt, const QString& title, const QString& defaultText) override;
};

}  // namespace sonorit::cli
