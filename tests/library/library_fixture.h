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
    LibraryMaker maker{app.paths, env.path(QStringLiteral("Music.vkt"))};
    LibraryFiles files;

    bool open(OpenVia via = OpenVia::Path)
    {
        files = maker.write();
        return Open_Library(ctx, files.vkt, via);
    }
    QByteArray trackfile() const { return readFile(files.trackfile); }
    QByteArray idfile() const { return readFile(files.idfile); }
    QString general(const char* key) const
    {
        return IniFile(files.vkt).read(QStringLiteral("GENERAL"), QLatin1String(key), QStringLiteral("<none>"));
    }
    // Temporary copies left in the data folder.
    QStringList temps() const
    {
        return QDir(app.paths.Data_Folder).entryList({QStringLiteral("Temp*")}, QDir::Files);
    }
    QStringList column(int col) const
    {
        QStringList out;
        for (int i = 0; i < lib.MP3_List.count(); ++i)
            out << lib.MP3_List.field(i, col);
        return out;
    }
};

// Makes the named step fail `times` times (forever by default) and notes
// every step a writer passes.
struct FailAt : FaultInjector {
    QString step;
    int times = 1 << 30;
    QStringList asked;
    bool fail(const char* s) override
    {
        asked << QLatin1String(s);
        if (step != QLatin1String(s) || times <= 0)
            return false;
        --times;
        return true;
    }
};

}  // namespace sonorit::test
