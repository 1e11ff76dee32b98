#include "play_events.h"

#include <cstdio>

#include "cli/cli_context.h"
#include "cli/json_writer.h"

namespace sonorit::cli {

namespace {
void line(const JsonObject& o)
{
    out(o.text() + QLatin1Char('\n'));
    // A script reads the events as they come, not when the run is over.
    fflush(stdout);
}
}  // namespace

void PlayEvents::trackStarted(const TrackStart& s)
{
    line(JsonObject().add("event", "start").add("pos", s.position).add("entry", s.entry).add("source", s.source).add("file", s.file));
}

void PlayEvents::trackSkipped(int entry) { line(JsonObject().add("event", "skip").add("entry", entry)); }
void PlayEvents::trackEnded(int entry) { line(JsonObject().add("event", "end").add("entry", entry)); }

void PlayEvents::positionPolled(double seconds)
{
    line(JsonObject().add("event", "position").raw("seconds", QString::number(seconds, 'f', 2)));
}

void PlayEvents::finished() { line(JsonObject().add("event", "stop")); }

}  // namespace sonorit::cli
