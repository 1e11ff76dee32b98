// The playlist at scale: loading an own-dialect list of 20,000 entries (no
// tag is read; target under 0.5 s), the duplicate scan of 20,000 entries
// (under 50 ms), and mnu_All_Play over a library of 20,000 tracks with a
// silent player until the list is complete (under 2 s).
#include <benchmark/benchmark.h>

#include <QDir>
#include <QElapsedTimer>

#include "playback/dup_scan.h"
#include "playback/playlist_files.h"
#include "playback/silent_graph.h"
#include "silent_ui.h"
#include "tests/support/mp3_maker.h"
#include "tests/support/temp_env.h"

using namespace sonorit;
using namespace sonorit::test;

namespace {

constexpr int kEntries = 20000;

// 20,000 short MP3 files in 2,000 album folders, made once per run.
struct Files {
    TempEnv env;
    QStringList paths;
    Files()
    {
        Mp3Recipe r;
        r.seconds = 0.1;
        const QByteArray audio = makeMp3(r);
        for (int i = 0; i < kEntries; ++i) {
            const QString folder = env.path(QStringLiteral("Music/Artist %1/Album %2").arg(i / 100).arg(i / 10));
            if (i % 10 == 0)
                QDir().mkpath(folder);
            const QString path = folder + QStringLiteral("/%1 Title %2.mp3").arg(i % 10 + 1, 2, 10, QLatin1Char('0')).arg(i);
            writeFile(path, audio);
            paths << path;
        }
    }
};

Files& files()
{
    static Files f;
    return f;
}

// Notes when the first track starts.
struct StartClock : PlayerView {
    QElapsedTimer timer;
    qint64 firstStartMs = -1;
    void trackStarted(const TrackStart&) override
    {
        if (firstStartMs < 0)
            firstStartMs = timer.elapsed();
    }
};

struct Playback {
    explicit Playback(const TempEnv& env)
        : app(env.paths()), player(PlaybackContext{app, lib, play, ui, graphs, view}), commands(player), lists(commands)
    {
    }
    AppState app;
    LibraryState lib;
    PlaybackState play;
    bench::SilentUi ui;
    SilentGraphFactory graphs;
    StartClock view;
    Player player;
    PlaylistCommands commands;
    PlaylistFiles lists;
};

void BM_OpenOwnPlaylist20000(benchmark::State& state)
{
    Files& f = files();
    const QString list = f.env.path(QStringLiteral("big.m3u"));
    {
        Playback p(f.env);
        for (int i = 0; i < kEntries; ++i) {
            p.commands.Add_Track_To_Array(f.paths[i]);
            p.play.Play_List.append({QStringLiteral("Artist %1").arg(i / 100), QStringLiteral("Album %1").arg(i / 10),
                                     QStringLiteral("Title %1").arg(i), QStringLiteral("03:25")});
        }
        p.lists.saveTo(list, false);
    }
    for (auto _ : state) {
        Playback p(f.env);
        p.lists.openFile(list, true);
        if (p.play.PlayList_Count != kEntries)
            state.SkipWithError("not every entry loaded");
    }
}
BENCHMARK(BM_OpenOwnPlaylist20000)->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_DuplicateScan20000(benchmark::State& state)
{
    Files& f = files();
    Playback p(f.env);
    for (int i = 0; i < kEntries; ++i) {
        p.commands.Add_Track_To_Array(f.paths[i]);
        // Every 50th title comes again a little later.
        const int t = i % 50 == 49 ? i - 7 : i;
        p.play.Play_List.append({QStringLiteral("Artist %1").arg(t / 100), QString(), QStringLiteral("Title %1").arg(t),
                                 QString()});
    }
    DupScan scan(p.commands);
    for (auto _ : state) {
        scan.scan();
        benchmark::DoNotOptimize(scan.Dup_Count());
    }
    state.counters["groups"] = scan.Dup_Count();
}
BENCHMARK(BM_DuplicateScan20000)->Unit(benchmark::kMillisecond);

void BM_AllPlay20000(benchmark::State& state)
{
    Files& f = files();
    Playback p(f.env);
    for (int i = 0; i < kEntries; ++i) {
        TrackRow row;
        row[ColArtist] = QStringLiteral("Artist %1").arg(i / 100);
        row[ColAlbum] = QStringLiteral("Album %1").arg(i / 10);
        row[ColTitle] = QStringLiteral("Title %1").arg(i);
        row[ColTime] = QStringLiteral("03:25");
        const int slash = f.paths[i].lastIndexOf(QLatin1Char('/'));
        row[ColFolder] = f.paths[i].left(slash);
        row[ColFilename] = f.paths[i].mid(slash + 1);
        p.lib.MP3_List.append(row);
    }
    double firstStart = 0;
    for (auto _ : state) {
        p.view.firstStartMs = -1;
        p.view.timer.start();
        p.commands.mnu_All_Play();
        firstStart = std::max(firstStart, double(p.view.firstStartMs));
        if (p.play.PlayList_Count != kEntries || p.play.Now_Source != f.paths[0])
            state.SkipWithError("the list is not complete or the first track is not playing");
    }
    state.counters["first_start_ms"] = firstStart;
}
BENCHMARK(BM_AllPlay20000)->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace

BENCHMARK_MAIN();
