#pragma once
// A library for benchmarks: album folders of small tagged tracks under a Main
// Folder ("A/A Artist 0/Album 0/01 - Title 1.mp3"), filled by a refresh.
#include <QDir>
#include <QElapsedTimer>
#include <functional>
#include <memory>

#include "bench/silent_ui.h"
#include "library/open_library.h"
#include "library/refresh.h"
#include "shell/app_state.h"
#include "tests/support/library_maker.h"
#include "tests/support/tag_bytes.h"
#include "tests/support/temp_env.h"

namespace sonorit::bench {

struct AlbumLibrary {
    test::TempEnv env;
    std::unique_ptr<AppState> app;
    LibraryState lib;
    SilentUi ui;
    std::unique_ptr<LibraryContext> c;
    double fillSeconds = 0;  // the refresh that filled it

    // `extras` may add files to each album folder.
    AlbumLibrary(int albums, int tracksPerAlbum, const std::function<void(const QString&)>& extras = {})
    {
        using namespace sonorit::test;
        const LibraryFiles f = LibraryMaker(env.paths(), env.path(QStringLiteral("Big.vkt"))).write();
        const QString main = env.path(QStringLiteral("Main"));
        // Two frames of MPEG 1 Layer 3 behind a small tag: enough for the
        // program to take the file for audio.
        const QByteArray audio = mp3Frame() + mp3Frame();
        for (int a = 0; a < albums; ++a) {
            const QString artist = QStringLiteral("%1 Artist %2").arg(QChar('A' + a % 26)).arg(a / 4);
            const QString folder = main + QStringLiteral("/%1/%2/Album %3").arg(artist[0]).arg(artist).arg(a);
            QDir().mkpath(folder);
            if (extras)
                extras(folder);
            for (int t = 1; t <= tracksPerAlbum; ++t) {
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
        fillSeconds = double(timer.nsecsElapsed()) / 1e9;
    }
};

}  // namespace sonorit::bench
