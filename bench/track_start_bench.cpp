// Start of a track, from the command to the first buffer in the audio sink,
// for a 10 MB MP3 whose tag holds a 1 MB cover: the stripped copy, a new
// graph, render and run; then the same through the player's double click on
// the playlist row. Target: under 150 ms.
#include <benchmark/benchmark.h>

#include <QElapsedTimer>
#include <QFile>
#include <QRandomGenerator>
#include <atomic>
#include <chrono>
#include <thread>

#include <gst/gst.h>

#include "bench/silent_ui.h"
#include "library/library_state.h"
#include "platform/gstreamer/gst_media_graph.h"
#include "playback/player.h"
#include "playback/playlist_commands.h"
#include "tags/strip.h"
#include "tests/support/mp3_maker.h"
#include "tests/support/tag_bytes.h"
#include "tests/support/temp_env.h"

using namespace sonorit;
using namespace sonorit::test;

namespace {

// A JPEG-like picture of random bytes: full of false frame headers.
QByteArray cover(int bytes)
{
    QByteArray image("\xFF\xD8\xFF\xE0", 4);
    QRandomGenerator random(7);
    while (image.size() < bytes)
        image.append(char(random.bounded(256)));
    return image;
}

// Ten minutes of CBR audio made of one encoded piece repeated; only the
// first piece carries the "Info" frame, so the length stays honest.
QByteArray bigTrack()
{
    Mp3Recipe head;
    head.seconds = 10;
    Mp3Recipe body = head;
    body.writeXing = false;
    const QByteArray tagged = tag(textFrame("TIT2", "Big") + apicFrame("image/jpeg", 3, cover(1 << 20)));
    QByteArray file = tagged + makeMp3(head);
    const QByteArray piece = makeMp3(body);
    while (file.size() < 10 * 1000 * 1000)
        file += piece;
    return file;
}

struct FirstBuffer {
    std::atomic<gint64> at{0};  // monotonic microseconds, 0 until it came
    static GstPadProbeReturn seen(GstPad*, GstPadProbeInfo*, gpointer self)
    {
        auto* me = static_cast<FirstBuffer*>(self);
        gint64 none = 0;
        me->at.compare_exchange_strong(none, g_get_monotonic_time());
        return GST_PAD_PROBE_REMOVE;
    }
};

void BM_TrackStart(benchmark::State& state)
{
    TempEnv env;
    const QString source = env.path(QStringLiteral("Big.mp3"));
    writeFile(source, bigTrack());
    const bool strip = state.range(0) != 0;
    const QString copy = env.path(QStringLiteral("Play01.mp3"));
    if (!strip)
        Strip_Tag2(source, copy);
    for (auto _ : state) {
        if (strip)
            QFile::remove(copy);
        FirstBuffer first;
        const gint64 start = g_get_monotonic_time();
        if (strip && !Strip_Tag2(source, copy)) {
            state.SkipWithError("no copy");
            break;
        }
        GstMediaGraph graph(QStringLiteral("fakesink"));
        GstPad* pad = graph.audioSink() ? gst_element_get_static_pad(graph.audioSink(), "sink") : nullptr;
        if (!pad) {
            state.SkipWithError("no sink");
            break;
        }
        gst_pad_add_probe(pad, GST_PAD_PROBE_TYPE_BUFFER, &FirstBuffer::seen, &first, nullptr);
        gst_object_unref(pad);
        if (!graph.renderFile(copy) || !graph.run()) {
            state.SkipWithError("did not start");
            break;
        }
        while (first.at.load() == 0)
            std::this_thread::sleep_for(std::chrono::microseconds(100));
        state.SetIterationTime(double(first.at.load() - start) / 1e6);
    }
    state.SetLabel(strip ? "strip + render + run" : "render + run");
}
BENCHMARK(BM_TrackStart)->Arg(1)->Arg(0)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(20);

// Graphs whose sink reports its first buffer.
class ProbedGraphs : public MediaGraphFactory {
public:
    FirstBuffer* first = nullptr;
    std::unique_ptr<MediaGraph> create() override
    {
        auto graph = std::make_unique<GstMediaGraph>(QStringLiteral("fakesink"));
        if (GstPad* pad = graph->audioSink() ? gst_element_get_static_pad(graph->audioSink(), "sink") : nullptr) {
            gst_pad_add_probe(pad, GST_PAD_PROBE_TYPE_BUFFER, &FirstBuffer::seen, first, nullptr);
            gst_object_unref(pad);
        }
        return graph;
    }
};

// The whole double click on the playlist row while the same track plays:
// the old graph stopped and dropped, the copy, the lyrics and the cover
// read from the tag, the new graph.
void BM_PlayListDoubleClick(benchmark::State& state)
{
    TempEnv env;
    AppState app{env.paths()};
    LibraryState lib;
    PlaybackState play;
    bench::SilentUi ui;
    ProbedGraphs graphs;
    PlayerView view;
    Player player{PlaybackContext{app, lib, play, ui, graphs, view}};
    PlaylistCommands commands{player};
    const QString source = env.path(QStringLiteral("Big.mp3"));
    writeFile(source, bigTrack());
    commands.Add_Entree_To_PlayList(source);
    play.Play_List.select(0);
    for (auto _ : state) {
        FirstBuffer first;
        graphs.first = &first;
        const gint64 start = g_get_monotonic_time();
        player.playListDoubleClick(0);
        if (!player.hasGraph()) {
            state.SkipWithError("did not start");
            break;
        }
        while (first.at.load() == 0)
            std::this_thread::sleep_for(std::chrono::microseconds(100));
        state.SetIterationTime(double(first.at.load() - start) / 1e6);
    }
    player.Stop_Track();
}
BENCHMARK(BM_PlayListDoubleClick)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(20);

}  // namespace

BENCHMARK_MAIN();
