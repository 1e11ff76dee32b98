// Opening a library whose Trackfile, IDfile and counts are anything at all:
// the first two bytes give the slot counts, the next two where the Trackfile
// ends and the IDfile begins. Opening may ask questions and run its repair;
// it must neither crash nor read outside what it was given.
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "library/library_state.h"
#include "library/open_library.h"
#include "shell/app_state.h"
#include "shell/ui_port.h"

namespace {

class AnsweringUi : public sonorit::UiPort {
public:
    sonorit::Answer message(const QString&, const QString&, sonorit::Buttons b, sonorit::Icon) override
    {
        const bool question = b == sonorit::Buttons::YesNo || b == sonorit::Buttons::YesNoCancel;
        yes_ = !yes_;
        return question ? (yes_ ? sonorit::Answer::Yes : sonorit::Answer::No) : sonorit::Answer::Ok;
    }
    QString fileDialog(const sonorit::FileDialogRequest&) override { return QString(); }
    QString browseForFolder() override { return QString(); }

private:
    bool yes_ = false;
};

void put(const QString& path, const QByteArray& bytes)
{
    QFile f(path);
    if (f.open(QIODevice::WriteOnly | QIODevice::Truncate))
        f.write(bytes);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, size_t size)
{
    static QTemporaryDir home;
    static const bool ready = [] {
        qputenv("HOME", home.path().toUtf8());
        qputenv("XDG_DATA_HOME", (home.path() + "/data").toUtf8());
        qputenv("XDG_CONFIG_HOME", (home.path() + "/config").toUtf8());
        QDir().mkpath(home.path() + "/data/ZEVSonorit");
        QDir().mkpath(home.path() + "/Main");
        return true;
    }();
    (void)ready;
    if (size < 4)
        return 0;
    const int idCount = data[0];
    const int albumCount = data[1];
    const size_t split = std::min<size_t>(size - 4, (size_t(data[2]) << 8) | data[3]);
    const char* rest = reinterpret_cast<const char*>(data + 4);
    const QString dir = home.path();
    put(dir + "/Track.tri", QByteArray(rest, static_cast<qsizetype>(split)));
    put(dir + "/ID.tri", QByteArray(rest + split, static_cast<qsizetype>(size - 4 - split)));
    put(dir + "/Lib.vkt", QStringLiteral("[GENERAL]\nALBUM_COUNT=%1\nID_COUNT=%2\nALBUMLIB_NAME=%3/Track.tri\n"
                                         "FREEID_NAME=%3/ID.tri\nLIB_FOLDER=%3/Main/\n")
                              .arg(albumCount).arg(idCount).arg(dir).toUtf8());

    sonorit::AppState app(sonorit::AppPaths::fromEnvironment(dir));
    sonorit::LibraryState lib;
    AnsweringUi ui;
    sonorit::LibraryContext c{app, lib, ui};
    sonorit::Open_Library(c, dir + "/Lib.vkt");
    return 0;
}
