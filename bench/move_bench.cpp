// Moving a library of 2,000 tracks in 200 album folders, each with a cover
// and a booklet, to a sibling folder on the same file system and back: every
// file renamed, never copied, each record written as its file lands, the
// library file sorted at the end. Target: under 2 s per move.
#include <benchmark/benchmark.h>

#include <QDir>
#include <memory>

#include "bench/silent_ui.h"
#include "library/library_move.h"
#include "library/open_library.h"
#include "library/refresh.h"
#include "shell/app_state.h"
#include "tests/support/library_maker.h"
#include "tests/support/tag_bytes.h"
#include "tests/support/temp_env.h"

using namespace sonorit;
using namespace sonorit::bench;
using namespace sonorit::test;

namespace {

constexpr int kAlbums = 200;
constexpr int kTracksPerAlbum = 10;

struct MovingLibrary {
    TempEnv env;
    std::unique_ptr<AppState> app;
    LibraryState lib;
    SilentUi ui;
    std::unique_ptr<LibraryContext> c;

    MovingLibrary()
    {
        const LibraryFiles f = LibraryMaker(env.paths(), env.path(QStringLiteral("Move.vkt"))).write();
        const QString main = env.path(QStringLiteral("Main"));
        const QByteArray audio = mp3Frame() + mp3Frame();
        for (int a = 0; a < kAlbums; ++a) {
            const QString artist = QStringLiteral("%1 Artist %2").arg(QChar('A' + a % 26)).arg(a / 4);
            const QString folder = main + QStringLiteral("/%1/%2/Album %3").arg(artist[0]).arg(artist).arg(a);
            QDir().mkpath(folder);
            writeFile(folder + QStringLiteral("/Folder.jpg"), QByteArray(2000, 'j'));
            writeFile(folder + QStringLiteral("/booklet.pdf"), QByteArray(500, 'p'));
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
        ui.answers = {Answer::Yes};
        mnu_Library_Refresh(*c);
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
