#pragma once
// What the verbs that work on a library share: the run on an opened library
// under its lock, and the ROW arguments that select rows as clicks would.
#include <QString>
#include <QStringList>
#include <functional>
#include <vector>

#include "cli/cli_context.h"
#include "platform/gstreamer/gst_duration_probe.h"

namespace sonorit::cli {

QString absolute(const QString& path);
// {"error": text} on standard error; ExitUsage.
int usageError(const QString& text);

// The file or folder the command names answers the dialog the flow opens
// first, ahead of the --dialog values.
void answerNextDialog(CliContext& c, const QString& value);

// Lengths of tracks whose first frame is damaged come from the decoder while
// the command runs.
class DecoderLengths {
public:
    explicit DecoderLengths(LibraryState& lib) : lib_(lib) { lib_.durations = &probe_; }
    ~DecoderLengths() { lib_.durations = nullptr; }
    DecoderLengths(const DecoderLengths&) = delete;
    DecoderLengths& operator=(const DecoderLengths&) = delete;

private:
    LibraryState& lib_;
    GstDurationProbe probe_;
};

// Where the lengths of tracks whose first frame is damaged come from while
// the command runs: the tags alone, or the decoder.
enum class Lengths { Tags, Decoder };

// Opens LIB.vkt under the library's lock, runs the command on it and prints
// the rows it leaves. The command's own exit code stops the printing.
int onLibrary(CliContext& c, const QString& vkt, Lengths lengths, const std::function<int(LibraryContext&)>& command);

// ROW arguments count from 1; they become indexes from 0. ExitOk, or
// ExitUsage with the reason reported.
int parseRows(const QStringList& texts, std::vector<int>& rows);
// Selects the rows, the first being the selected row; with none the
// selection stays as opening left it. ExitUsage for a row past the list.
int selectRows(TrackList& list, const std::vector<int>& rows);

// VERB LIB.vkt SCOPE [ROW...]: `scopes` are the scope words the verb knows;
// `run` gets the index of the one given, once the ROWs are selected on the
// opened library. Without ROW the first row stays selected, as opening
// leaves it.
int onScopedRows(CliContext& c, const QStringList& args, const QStringList& scopes,
                 const std::function<int(LibraryContext&, int scope)>& run);

}  // namespace sonorit::cli
