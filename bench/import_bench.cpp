// Importing 2,000 tagged tracks into a new library through the core, as
// "Scan Folder" does (copy into Quarantaine, add, move to the album folder),
// and the steps an import is made of, each alone, so that the cost of a file
// can be split: tag read, copy, record append, the two counts in the .vkt
// file, the move to the album folder. The files are made once per run, warm
// in the cache.
#include <benchmark/benchmark.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <memory>

#include "bench/silent_ui.h"
#include "library/open_library.h"
#include "library/slots.h"
#include "library/track_fields.h"
#include "library/track_import.h"
#include "library/track_moves.h"
#include "library/trackfile.h"
#include "shell/app_state.h"
#include "shell/file_copy.h"
#include "tests/support/library_maker.h"
#include "tests/support/mp3_maker.h"
#include "tests/support/tag_bytes.h"
#include "tests/support/temp_env.h"

using namespace sonorit;
using namespace sonorit::bench;
using namespace sonorit::test;

namespace {

constexpr int kFiles = 2000;

// 2,000 tracks of one second by 200 artists in 500 albums, each with its
// own ID3v2.3 tag, in one folder.
struct Corpus {
    TempEnv env;
    QString folder = env.path(QStringLiteral("Incoming"));
    QStringList files;

    Corpus()
    {
        QDir().mkpath(folder);
        const QByteArray audio = makeMp3({1});
        for (int i = 0; i < kFiles; ++i) {
            const QByteArray artist = "Artist " + QByteArray::number(i % 200);
            const QByteArray frames = textFrame("TPE1", artist) + textFrame("TALB", "Album " + QByteArray::number(i % 500))
                                      + textFrame("TRCK", QByteArray::number(i % 12 + 1))
                                      + textFrame("TIT2", "Title " + QByteArray::number(i))
                                      + textFrame("TYER", "1999") + textFrame("TCON", "(17)");
            files << folder + QStringLiteral("/track%1.mp3").arg(i, 4, 10, QLatin1Char('0'));
            writeFile(files.back(), tag(frames + QByteArray(256, '\0')) + audio);
        }
    }
};

Corpus& corpus()
{
    static Corpus c;
    return c;
}

// An empty library with its Main folder, open; made anew each time.
struct Library {
    AppState app;
    LibraryState lib;
    SilentUi ui;
    LibraryContext c{app, lib, ui};

    explicit Library(const TempEnv& env) : app(env.paths())
    {
        QDir(env.path(QStringLiteral("Lib"))).removeRecursively();
        const LibraryFiles f = LibraryMaker(env.paths(), env.path(QStringLiteral("Lib/Lib.vkt"))).write();
        Open_Library(c, f.vkt);
    }
};

void perFile(benchmark::State& state, int filesPerIteration)
{
    const double files = double(state.iterations()) * filesPerIteration;
    state.SetItemsProcessed(int64_t(files));
    state.counters["time_per_file"] = benchmark::Counter(files, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

// The whole import of the folder into an empty library.
void BM_ScanFolder2000(benchmark::State& state)
{
    Corpus& k = corpus();
    for (auto _ : state) {
        state.PauseTiming();
        auto library = std::make_unique<Library>(k.env);
        state.ResumeTiming();
        DirectoryScan(library->c, k.folder, false);
        if (library->lib.MP3_List.count() != kFiles || !QDir(k.env.path("Lib/Main/Quarantaine")).isEmpty())
            state.SkipWithError("not every track reached its album folder");
    }
    perFile(state, kFiles);
}

// The columns of a row from the file: both tag reads, the length, the stamp.
void BM_TagRead(benchmark::State& state)
{
    Corpus& k = corpus();
    Library library(k.env);
    int i = 0;
    for (auto _ : state) {
        TrackRow row;
        Track_Fields_From_File(library.c, k.files[i++ % kFiles], row);
        benchmark::DoNotOptimize(row);
    }
    perFile(state, 1);
}

// The copy into Quarantaine: complete or not at all, flushed to disk.
void BM_CopyKeepingTime(benchmark::State& state)
{
    Corpus& k = corpus();
    const QString target = k.env.path(QStringLiteral("Copies/"));
    QDir().mkpath(target);
    int i = 0;
    for (auto _ : state) {
        const QString& source = k.files[i++ % kFiles];
        if (!copyFileKeepingTime(source, target + QFileInfo(source).fileName()))
            state.SkipWithError("a copy failed");
    }
    perFile(state, 1);
}

// For comparison, the plain copy of the file system, with no flush.
void BM_PlainCopy(benchmark::State& state)
{
    Corpus& k = corpus();
    const QString target = k.env.path(QStringLiteral("PlainCopies/"));
    QDir().mkpath(target);
    int i = 0;
    for (auto _ : state) {
        const QString& source = k.files[i++ % kFiles];
        const QString to = target + QFileInfo(source).fileName();
        QFile::remove(to);
        if (!QFile::copy(source, to))
            state.SkipWithError("a copy failed");
    }
    perFile(state, 1);
}

// Add_MP3 alone, on files where they lie: tag read, ID, record, counts.
void BM_AddMp3(benchmark::State& state)
{
    Corpus& k = corpus();
    std::unique_ptr<Library> library;
    int i = 0;
    for (auto _ : state) {
        if (i % kFiles == 0) {
            state.PauseTiming();
            library = std::make_unique<Library>(k.env);
            state.ResumeTiming();
        }
        if (!Add_MP3(library->c, k.files[i++ % kFiles]))
            state.SkipWithError("an add failed");
    }
    perFile(state, 1);
}

// The record of a track appended to the Trackfile, nothing else.
void BM_AppendRecord(benchmark::State& state)
{
    Corpus& k = corpus();
    Library library(k.env);
    TrackRow row;
    Track_Fields_From_File(library.c, k.files[0], row);
    const QString text = Join_Track_Record(row);
    int id = 0;
    for (auto _ : state) {
        if (!Append_Track_Record(library.c, ++id, text))
            state.SkipWithError("an append failed");
    }
    perFile(state, 1);
}

// A new count written into the .vkt file, which is replaced whole; an add
// writes two, ID_COUNT and ALBUM_COUNT.
void BM_WriteCountToLibraryFile(benchmark::State& state)
{
    Corpus& k = corpus();
    Library library(k.env);
    for (auto _ : state) {
        ++library.lib.ID_COUNT;  // an unchanged value is not written at all
        if (!Write_ID_Count(library.c))
            state.SkipWithError("the library file was not written");
    }
    perFile(state, 1);
}

// The move of a track just added from Quarantaine to its album folder, and
// its record rewritten in place.
void BM_RelocateAfterAdd(benchmark::State& state)
{
    Corpus& k = corpus();
    std::unique_ptr<Library> library;
    int i = 0;
    for (auto _ : state) {
        state.PauseTiming();
        if (i % kFiles == 0)
            library = std::make_unique<Library>(k.env);
        const QString& source = k.files[i++ % kFiles];
        const QString target = library->app.Quarantaine_Folder + QLatin1Char('/') + QFileInfo(source).fileName();
        const bool added = copyFileKeepingTime(source, target) && Add_MP3(library->c, target);
        state.ResumeTiming();
        if (!added || !Relocate_Track(library->c, library->lib.MP3_List.count() - 1, true))
            state.SkipWithError("a track was not placed");
    }
    perFile(state, 1);
}

}  // namespace

// Wall-clock time throughout: most of an import is waiting for the disk.
BENCHMARK(BM_ScanFolder2000)->Unit(benchmark::kMillisecond)->Iterations(3)->UseRealTime();
BENCHMARK(BM_TagRead)->Unit(benchmark::kMicrosecond)->Iterations(6000)->UseRealTime();
BENCHMARK(BM_CopyKeepingTime)->Unit(benchmark::kMicrosecond)->Iterations(2000)->UseRealTime();
BENCHMARK(BM_PlainCopy)->Unit(benchmark::kMicrosecond)->Iterations(2000)->UseRealTime();
BENCHMARK(BM_AddMp3)->Unit(benchmark::kMicrosecond)->Iterations(2000)->UseRealTime();
BENCHMARK(BM_AppendRecord)->Unit(benchmark::kMicrosecond)->Iterations(2000)->UseRealTime();
BENCHMARK(BM_WriteCountToLibraryFile)->Unit(benchmark::kMicrosecond)->Iterations(2000)->UseRealTime();
BENCHMARK(BM_RelocateAfterAdd)->Unit(benchmark::kMicrosecond)->Iterations(2000)->UseRealTime();
BENCHMARK_MAIN();
