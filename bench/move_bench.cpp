// Moving a library of 2,000 tracks in 200 album folders, each with a cover
// and a booklet, to a sibling folder on the same file system and back: every
// file renamed, never copied, each record written as its file lands, the
// library file sorted at the end. Target: under 2 s per move.
#include <benchmark/benchmark.h>

#include <QDir>

#include "bench/album_library.h"
#include "library/library_move.h"

using namespace sonorit;
using namespace sonorit::bench;
using namespace sonorit::test;

namespace {

constexpr int kAlbums = 200;
constexpr int kTracksPerAlbum = 10;

// Each album folder holds a cover and a booklet besides its tracks.
struct MovingLibrary : AlbumLibrary {
    MovingLibrary()
        : AlbumLibrary(kAlbums, kTracksPerAlbum, [](const QString& folder) {
              test::writeFile(folder + QStringLiteral("/Folder.jpg"), QByteArray(2000, 'j'));
              test::writeFile(folder + QStringLiteral("/booklet.pdf"), QByteArray(500, 'p'));
          })
    {
    }
};

void BM_MoveLibrary2000(benchmark::State& state)
{
    MovingLibrary big;
    if (big.lib.MP3_List.count() != kAlbums * kTracksPerAlbum) {
        state.SkipWithError("the library was not built");
        return;
    }
    int round = 0;
    for (auto _ : state) {
        const QString target = big.env.path(round++ % 2 == 0 ? QStringLiteral("Moved") : QStringLiteral("Main"));
        big.ui.dialogs = {target};
        if (!mnu_Library_Move(*big.c) || big.app->Library_Main_Folder != target + QLatin1Char('/'))
            state.SkipWithError("the library did not move");
    }
    state.counters["tracks"] = big.lib.MP3_List.count();
}

}  // namespace

BENCHMARK(BM_MoveLibrary2000)->Unit(benchmark::kMillisecond)->Iterations(4)->UseRealTime();
BENCHMARK_MAIN();
