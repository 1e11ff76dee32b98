#pragma once
// A private home with one library made by LibraryMaker, and the state the
// library routines work on.
#include <QDir>

#include "library/library_state.h"
#include "library/open_library.h"
#include "shell/app_state.h"
#include "shell/ini_file.h"
#include "tests/support/library_maker.h"
#include "tests/support/qt_gtest_print.h"
#include "tests/support/scripted_ui.h"
#include "tests/support/temp_env.h"

namespace sonorit::test {

struct LibraryFixture {
    TempEnv env;
    AppState app{env.paths()};
    LibraryState lib;
    ScriptedUi ui;
    LibraryContext ctx{app, lib, ui};
    LibraryMaker maker{app.paths, env.path("Music.vkt")};
    LibraryFiles files;

    bool open(OpenVia via = OpenVia::Path)
    {
        files = maker.write();
        return Open_Library(ctx, files.vkt, via);
    }
    QByteArray trackfile() const { return readFile(files.trackfile); }
    QByteArray idfile() const { return readFile(files.idfile); }
    QString general(const char* key) const { return IniFile(files.vkt).read("GENERAL", key, "<none>"); }
    QString counts() const { return general("ALBUM_COUNT") + " of " + general("ID_COUNT"); }
    // Temporary copies left in the data folder.
    QStringList temps() const { return QDir(app.paths.Data_Folder).entryList({"Temp*"}, QDir::Files); }
    QStringList column(int col) const
    {
        QStringList out;
        for (int i = 0; i < lib.MP3_List.count(); ++i)
            out << lib.MP3_List.field(i, col);
        return out;
    }
    // The list's rows in order as slots 1, 2, ...: what a rewrite gives.
    QByteArray listAsTrackfile() const
    {
        QByteArray out;
        for (int i = 0; i < lib.MP3_List.count(); ++i)
            out += trackRecord(i + 1, recordText(lib.MP3_List.row(i)));
        return out;
    }
};

// Makes the named step fail `times` times (forever by default) and counts the
// times a writer passes it.
struct FailAt : FaultInjector {
    explicit FailAt(QString s, int t = 1 << 30) : step(std::move(s)), times(t) {}
    QString step;
    int times, asked = 0;
    bool fail(const char* s) override
    {
        if (step != QLatin1String(s))
            return false;
        ++asked;
        return times-- > 0;
    }
};

}  // namespace sonorit::test
