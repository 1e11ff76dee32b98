// A second backup of an unchanged library of 20,000 tracks in 2,000 album
// folders, against the floor of any such run: two stat calls per track, one
// for the track and one for its copy. Target: within three times the floor.
// The first backup, which copies everything, is timed once.
#include <benchmark/benchmark.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <sys/stat.h>

#include "bench/album_library.h"
#include "library/backup.h"

using namespace sonorit;
using namespace sonorit::bench;
using namespace sonorit::test;

namespace {

constexpr int kAlbums = 2000;
constexpr int kTracksPerAlbum = 10;

struct BackedUpLibrary : AlbumLibrary {
    double firstBackupSeconds = 0;
    bool ok = false;

    BackedUpLibrary() : AlbumLibrary(kAlbums, kTracksPerAlbum)
    {
        const QString bak = env.path(QStringLiteral("Bak/"));
        QDir().mkpath(bak);
        ui.answers = {Answer::Yes, Answer::Ok};
        ui.dialogs = {bak};
        QElapsedTimer timer;
        timer.start();
        ok = mnu_Library_Backup(*c) && lib.MP3_List.count() == kAlbums * kTracksPerAlbum;
        firstBackupSeconds = double(timer.nsecsElapsed()) / 1e9;
    }
};

BackedUpLibrary& library()
{
    static BackedUpLibrary big;
    return big;
}

void BM_SecondBackupUnchanged20000(benchmark::State& state)
{
    BackedUpLibrary& big = library();
    if (!big.ok) {
        state.SkipWithError("the library was not built or backed up");
        return;
    }
    for (auto _ : state) {
        big.ui.answers = {Answer::Yes, Answer::Yes};
        big.ui.messages = 0;
        if (!mnu_Library_Backup(*big.c) || big.ui.messages != 3)
            state.SkipWithError("the backup did not run through");
    }
    state.counters["rows"] = big.lib.MP3_List.count();
    state.counters["first_backup_s"] = big.firstBackupSeconds;
}

// The floor: each track's path and its copy's path made from the row, and
// both looked up.
void BM_TwoStatsPerTrack20000(benchmark::State& state)
{
    BackedUpLibrary& big = library();
    const TrackList& list = big.lib.MP3_List;
    const QString& main = big.app->Library_Main_Folder;
    const QString& bak = big.app->Backup_Folder;
    for (auto _ : state) {
        int found = 0;
        for (int i = 0; i < list.count(); ++i) {
            const QString path = list.field(i, ColFolder) + QLatin1Char('/') + list.field(i, ColFilename);
            const QString copy = bak + path.mid(main.size());
            struct stat st {};
            found += ::stat(QFile::encodeName(path).constData(), &st) == 0;
            found += ::stat(QFile::encodeName(copy).constData(), &st) == 0;
        }
        if (found != 2 * list.count())
            state.SkipWithError("a file is missing");
    }
}

}  // namespace

BENCHMARK(BM_SecondBackupUnchanged20000)->Unit(benchmark::kMillisecond)->Iterations(5)->UseRealTime();
BENCHMARK(BM_TwoStatsPerTrack20000)->Unit(benchmark::kMillisecond)->Iterations(5)->UseRealTime();
BENCHMARK_MAIN();
