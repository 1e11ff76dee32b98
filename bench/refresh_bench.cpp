// Refresh of an unchanged library of 20,000 tracks in 2,000 album folders:
// every row's file looked up, every folder listed, nothing read or written.
// Target: well under 2 s. The library is built once by a refresh of the new
// tree, which is timed too, once.
#include <benchmark/benchmark.h>

#include <QDir>
#include <QElapsedTimer>

#include "bench/album_library.h"
#include "library/naming_commands.h"

using namespace sonorit;
using namespace sonorit::bench;
using namespace sonorit::test;

namespace {

constexpr int kAlbums = 2000;
constexpr int kTracksPerAlbum = 10;

struct BigLibrary : AlbumLibrary {
    BigLibrary() : AlbumLibrary(kAlbums, kTracksPerAlbum) {}
};

BigLibrary& bigLibrary();

void BM_RefreshUnchanged20000(benchmark::State& state)
{
    BigLibrary& big = bigLibrary();
    if (big.lib.MP3_List.count() != kAlbums * kTracksPerAlbum) {
        state.SkipWithError("the library was not built");
        return;
    }
    for (auto _ : state) {
        const RefreshCounts n = mnu_Library_Refresh(*big.c);
        if (n.added || n.removed || n.refreshed)
            state.SkipWithError("the unchanged library changed");
    }
    state.counters["rows"] = big.lib.MP3_List.count();
    state.counters["first_fill_s"] = big.fillSeconds;
}

BigLibrary& bigLibrary()
{
    static BigLibrary big;
    return big;
}

// Rename All over the 20,000 tracks, every file taking the rule's name; then
// Relocate All after the prefix level was switched off, every file moving
// and every old folder going. Once each: a second run would find nothing to do.
void BM_RenameAll20000(benchmark::State& state)
{
    BigLibrary& big = bigLibrary();
    for (auto _ : state) {
        big.lib.MP3_List.select(0);
        mnu_Library_Rename_All(*big.c);
    }
    if (!big.lib.MP3_List.field(0, ColFilename).contains(QLatin1String(" - Album ")))
        state.SkipWithError("the files were not renamed");
}

void BM_RelocateAll20000(benchmark::State& state)
{
    BigLibrary& big = bigLibrary();
    big.lib.naming.working.prefix = false;
    for (auto _ : state) {
        big.lib.MP3_List.select(0);
        mnu_Library_Relocate_All(*big.c);
    }
    if (big.lib.MP3_List.field(0, ColFolder).contains(QLatin1String("/Main/A/")))
        state.SkipWithError("the files were not relocated");
}

}  // namespace

BENCHMARK(BM_RefreshUnchanged20000)->Unit(benchmark::kMillisecond)->Iterations(5)->UseRealTime();
BENCHMARK(BM_RenameAll20000)->Unit(benchmark::kMillisecond)->Iterations(1)->UseRealTime();
BENCHMARK(BM_RelocateAll20000)->Unit(benchmark::kMillisecond)->Iterations(1)->UseRealTime();
BENCHMARK_MAIN();
