// Refresh of an unchanged library of 20,000 tracks in 2,000 album folders:
// every row's file looked up, every folder listed, nothing read or written.
// Target: well under 2 s. The library is built once by a refresh of the new
// tree, which is timed too, once.
#include <benchmark/benchmark.h>

#include <QDir>
#include <QElapsedTimer>
#include <memory>

#include "bench/silent_ui.h"
#include "library/open_library.h"
#include "library/naming_commands.h"
#include "library/refresh.h"
#include "shell/app_state.h"
#include "tests/support/library_maker.h"
#include "tests/support/tag_bytes.h"
#include "tests/support/temp_env.h"

using namespace sonorit;
using namespace sonorit::bench;
using namespace sonorit::test;

namespace {

constexpr int kAlbums = 2000;
constexpr int kTracksPerAlbum = 10;

struct BigLibrary {
    TempEnv env;
    std::unique_ptr<AppState> app;
    LibraryState lib;
    SilentUi ui;
    std::unique_ptr<LibraryContext> c;
    double buildSeconds = 0;

    BigLibrary()
    {
        const LibraryFiles f = LibraryMaker(env.paths(), env.path(QStringLiteral("Big.vkt"))).write();
        const QString main = env.path(QStringLiteral("Main"));
        // Two frames of MPEG 1 Layer 3 behind a small tag: enough for the
        // program to take the file for audio.
        const QByteArray audio = mp3Frame() + mp3Frame();
        for (int a = 0; a < kAlbums; ++a) {
            const QString artist = QStringLiteral("%1 Artist %2").arg(QChar('A' + a % 26)).arg(a / 4);
            const QString folder = main + QStringLiteral("/%1/%2/Album %3").arg(artist[0]).arg(artist).arg(a);
            QDir().mkpath(folder);
            for (int t = 1; t <= kTracksPerAlbum; ++t) {
                const QByteArray frames = textFrame("TPE1", artist.toLatin1())
                                          + textFrame("TALB", "Album " + QByteArray::number(a))
                                          + textFrame("TRCK", QByteArray::number(t))
                                          + textFrame("TIT2", "Title " + QByteArray::number(t));
                writeFile(folder + QStringLiteral("/%1 - Title %2.mp3").arg(t, 2, 10, QLatin1Char('0')).arg(t),
                          tag(frames) + audio);
            }
        }
        app = std::make_unique<AppState>(env.paths());
        c = std::make_unique<LibraryContext>(LibraryContext{*app, lib, ui});
        Open_Library(*c, f.vkt);
        ui.answers = {Answer::Yes};  // sort the slots after the first fill
        QElapsedTimer timer;
        timer.start();
        mnu_Library_Refresh(*c);
        buildSeconds = double(timer.nsecsElapsed()) / 1e9;
    }
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
    state.counters["first_fill_s"] = big.buildSeconds;
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
