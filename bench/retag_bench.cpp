// Quick Retag of all 2,000 tracks of a library, and selection tagging of 500
// rows (the artist), against the bare cost of replacing each file durably
// as a tag write does (copy to "Temp.mp3", fsync, rename, fsync the folder).
// Targets: under 1 ms per track beyond that copy; under 1 s for the 500 rows
// beyond their copies. The copies are timed between the runs, so that both
// see the disk in the same mood.
#include <benchmark/benchmark.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <ctime>
#include <fcntl.h>
#include <unistd.h>

#include "bench/album_library.h"
#include "shell/settings_families.h"
#include "tagedit/retag.h"
#include "tagedit/selection_tagging.h"
#include "tags/id3v2_reader.h"
#include "tags/id3v2_writer.h"
#include "tags/tag_swap.h"

using namespace sonorit;
using namespace sonorit::bench;

namespace {

constexpr int kAlbums = 200;
constexpr int kTracksPerAlbum = 10;
constexpr int kSelected = 500;

struct RetagLibrary : AlbumLibrary {
    TagState tags;
    std::unique_ptr<TagEditContext> edit;
    RetagLibrary() : AlbumLibrary(kAlbums, kTracksPerAlbum)
    {
        Get_Tag_Settings(*app);  // the options a new user has
        tags = Fresh_Tag_State(*app);
        edit = std::make_unique<TagEditContext>(TagEditContext{*app, lib, ui, tags, nullptr, {}});
    }
    QString pathOf(int row) const
    {
        return lib.MP3_List.field(row, ColFolder) + QLatin1Char('/') + lib.MP3_List.field(row, ColFilename);
    }
};

RetagLibrary& library()
{
    static RetagLibrary big;
    return big;
}

// Seconds of processor time of this process, user and system, so that a
// figure can leave out the waits for the disk, which vary from run to run.
double cpuSeconds()
{
    timespec t{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return double(t.tv_sec) + double(t.tv_nsec) / 1e9;
}

bool syncPath(const QString& path, int flags)
{
    const int fd = ::open(QFile::encodeName(path).constData(), flags | O_CLOEXEC);
    const bool ok = fd >= 0 && ::fsync(fd) == 0;
    if (fd >= 0)
        ::close(fd);
    return ok;
}

struct Cost {
    double wall = 0, cpu = 0;
    Cost& operator+=(const Cost& o)
    {
        wall += o.wall;
        cpu += o.cpu;
        return *this;
    }
};

// Times `work` by the clock and by the processor.
template <typename Work>
Cost timed(const Work& work)
{
    QElapsedTimer timer;
    const double cpu = cpuSeconds();
    timer.start();
    work();
    return {double(timer.nsecsElapsed()) / 1e9, cpuSeconds() - cpu};
}

// What replacing the file of each of the first `rows` rows costs by itself.
Cost durableCopies(const RetagLibrary& big, int rows)
{
    const QString temp = big.app->Data_Folder() + QStringLiteral("Temp.mp3");
    return timed([&] {
        for (int i = 0; i < rows; ++i) {
            const QString path = big.pathOf(i);
            QFile::remove(temp);
            QFile::copy(path, temp);
            syncPath(temp, O_RDONLY);
            ::rename(QFile::encodeName(temp).constData(), QFile::encodeName(path).constData());
            syncPath(big.lib.MP3_List.field(i, ColFolder), O_RDONLY | O_DIRECTORY);
        }
    });
}

void BM_QuickRetagAll2000(benchmark::State& state)
{
    RetagLibrary& big = library();
    const int rows = big.lib.MP3_List.count();
    if (rows != kAlbums * kTracksPerAlbum) {
        state.SkipWithError("the library was not built");
        return;
    }
    Cost retag, copies;
    for (auto _ : state) {
        big.ui.messages = 0;
        RetagRun run;
        retag += timed([&] { run = mnu_Retag_All(*big.edit); });
        if (run.failed || run.unreadable || big.ui.messages)
            state.SkipWithError("a track was not retagged");
        state.PauseTiming();
        copies += durableCopies(big, rows);
        state.ResumeTiming();
    }
    const double n = double(state.iterations()) * rows;
    state.counters["copy_ms_per_track"] = copies.wall / n * 1e3;
    state.counters["ms_per_track_beyond_copy"] = (retag.wall - copies.wall) / n * 1e3;
    state.counters["cpu_ms_per_track_beyond_copy"] = (retag.cpu - copies.cpu) / n * 1e3;
}

// The tag engine's part alone: the quick read, the write and the swap of
// each file, without the checks, the row and the record.
void BM_EngineWriteAndSwap2000(benchmark::State& state)
{
    RetagLibrary& big = library();
    const int rows = big.lib.MP3_List.count();
    Cost engine;
    for (auto _ : state) {
        engine += timed([&] {
            for (int i = 0; i < rows; ++i) {
                const QString path = big.pathOf(i);
                Read_Tag2(big.tags, path, Tag2Mode::Quick);
                Write_Through_Temp(big.app->Data_Folder(), path, big.ui, [&](const QString& s, const QString& d) {
                    return Write_Tag2_Quick(big.tags, big.app->Tag_Options, s, d);
                });
            }
        });
    }
    state.counters["ms_per_track"] = engine.wall / double(state.iterations()) / rows * 1e3;
    state.counters["cpu_ms_per_track"] = engine.cpu / double(state.iterations()) / rows * 1e3;
}

void BM_TagSelectionArtist500(benchmark::State& state)
{
    RetagLibrary& big = library();
    std::vector<int> rows(kSelected);
    for (int i = 0; i < kSelected; ++i)
        rows[size_t(i)] = i;
    big.lib.MP3_List.setSelection(rows, 0);
    TagPanels panels;
    PanelContext p{*big.edit, panels, {}, {}};
    Cost tagging, copies;
    int round = 0;
    for (auto _ : state) {
        big.ui.messages = 0;
        int failed = 0;
        const QString artist = QStringLiteral("Artist %1").arg(++round);
        tagging += timed([&] { failed = Tag_Selection(p, SelectionKind::Artist, artist); });
        if (failed || big.ui.messages)
            state.SkipWithError("a row was not tagged");
        state.PauseTiming();
        copies += durableCopies(big, kSelected);
        state.ResumeTiming();
    }
    const double n = double(state.iterations());
    state.counters["copies_s"] = copies.wall / n;
    state.counters["s_beyond_copies"] = (tagging.wall - copies.wall) / n;
    state.counters["cpu_s_beyond_copies"] = (tagging.cpu - copies.cpu) / n;
}

}  // namespace

BENCHMARK(BM_QuickRetagAll2000)->Unit(benchmark::kMillisecond)->Iterations(3)->UseRealTime();
BENCHMARK(BM_EngineWriteAndSwap2000)->Unit(benchmark::kMillisecond)->Iterations(3)->UseRealTime();
BENCHMARK(BM_TagSelectionArtist500)->Unit(benchmark::kMillisecond)->Iterations(3)->UseRealTime();
BENCHMARK_MAIN();
