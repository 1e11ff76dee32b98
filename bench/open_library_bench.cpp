// Opening a library of 30,000 tracks: the time of Open_Library and the peak
// memory of the process. Targets: under 0.5 s and under 100 MB.
#include <benchmark/benchmark.h>

#include <sys/resource.h>

#include "library/open_library.h"
#include "library/trackfile.h"
#include "shell/app_state.h"
#include "shell/ui_port.h"
#include "tests/support/library_maker.h"
#include "tests/support/scripted_ui.h"
#include "tests/support/temp_env.h"

using namespace sonorit;
using namespace sonorit::test;

namespace {

double peakMegabytes()
{
    rusage u{};
    getrusage(RUSAGE_SELF, &u);
    return double(u.ru_maxrss) / 1024.0;  // kilobytes on Linux
}

// 30,000 tracks in 3,000 album folders of 10, with the slots in a shuffled
// order so that the sort has work to do, and every 500th slot free.
LibraryFiles makeLibrary(const TempEnv& env, int tracks)
{
    LibraryMaker m(env.paths(), env.path(QStringLiteral("Big.vkt")));
    quint32 seed = 12345;
    for (int i = 0; i < tracks; ++i) {
        if (i % 500 == 499)
            m.freeSlot();
        seed = seed * 1664525u + 1013904223u;
        const int album = int(seed >> 8) % (tracks / 10);
        const QString artist = QStringLiteral("Artist %1").arg(album / 4);
        m.track(makeTrack(artist, QStringLiteral("Title number %1").arg(i),
                          QStringLiteral("/home/user/Music/%1/Album %2").arg(artist).arg(album),
                          QStringLiteral("%1 - %2 - Title number %3.mp3").arg(i % 10 + 1, 2, 10, QLatin1Char('0'))
                              .arg(artist).arg(i),
                          QStringLiteral("Album %1").arg(album)));
    }
    return m.write();
}

void BM_OpenLibrary30000(benchmark::State& state)
{
    TempEnv env;
    const LibraryFiles files = makeLibrary(env, 30000);
    const double before = peakMegabytes();
    ScriptedUi ui;  // answers nothing is asked
    int rows = 0;
    for (auto _ : state) {
        AppState app(env.paths());
        LibraryState lib;
        LibraryContext c{app, lib, ui};
        if (!Open_Library(c, files.vkt))
            state.SkipWithError("the library did not open");
        rows = lib.MP3_List.count();
        benchmark::DoNotOptimize(rows);
    }
    state.counters["rows"] = rows;
    state.counters["peak_MB"] = peakMegabytes();
    state.counters["peak_MB_before_open"] = before;
}

// One record rewritten in the middle of the Trackfile of an open library, as
// a rename or relocation of one track does.
void BM_ReplaceRecordOf20000(benchmark::State& state)
{
    TempEnv env;
    const LibraryFiles files = makeLibrary(env, 20000);
    ScriptedUi ui;
    AppState app(env.paths());
    LibraryState lib;
    LibraryContext c{app, lib, ui};
    if (!Open_Library(c, files.vkt))
        state.SkipWithError("the library did not open");
    const int row = lib.MP3_List.count() / 2;
    TrackRow r = lib.MP3_List.row(row);
    const int id = r[ColID].mid(6).toInt();
    int n = 0;
    for (auto _ : state) {
        r[ColFolder] = QStringLiteral("/home/user/Music/Moved %1").arg(++n);
        if (!Replace_Track_Record(c, id, Join_Track_Record(r)))
            state.SkipWithError("the record was not written");
    }
}

}  // namespace

BENCHMARK(BM_ReplaceRecordOf20000)->Unit(benchmark::kMillisecond)->Iterations(20);
BENCHMARK(BM_OpenLibrary30000)->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK_MAIN();
