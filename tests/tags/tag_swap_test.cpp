// The road of every tag write through "Temp.mp3": whatever fails, the track
// stays byte for byte as it was and no "Temp.mp3" is left.
#include <gtest/gtest.h>

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <csignal>
#include <optional>
#include <stdexcept>
#include <sys/resource.h>
#include <sys/stat.h>

#include "tags/tag_swap.h"
#include "tests/support/mp3_maker.h"
#include "tests/support/scripted_ui.h"
#include "tests/support/temp_env.h"
#include "writer_fixtures.h"

using namespace sonorit;
using namespace sonorit::test;

namespace {

// A real write error: the process may not grow a file beyond `bytes`, and
// the system refuses the write as a full disk would.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &old_);
        const rlimit limit{bytes, old_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &old_); }

private:
    rlimit old_{};
};

struct Track {
    TempEnv env;
    QString data = env.path("data/"), path = env.path("music/track.mp3"), temp = data + "Temp.mp3";
    QByteArray original;
    TagState state;
    ScriptedUi ui;
    int rereads = 0;

    explicit Track(QByteArray bytes) : original(std::move(bytes))
    {
        QDir().mkpath(data);
        QDir().mkpath(env.path("music"));
        writeFile(path, original);
        state.Tag2_Fields.Artist = "New artist";
    }
    Tag2FileWriter panel()
    {
        return [this](const QString& s, const QString& t) {
            return Write_Tag2_Panel(state, defaultTagOptions(), s, t);
        };
    }
    bool swap(const Tag2FileWriter& writer, const QString& folder = {}, const QString& file = {})
    {
        return Write_Through_Temp(folder.isEmpty() ? data : folder, file.isEmpty() ? path : file, ui, writer,
                                  [this] { ++rereads; });
    }
};

const QByteArray kTrack = tag(textFrame("TPE1", "Old") + frame("TXXX", QByteArray("\0k\0v", 4))) + makeMp3({2});

}  // namespace

TEST(TagSwap, ASuccessfulWriteReplacesTheTrackAndALinkStaysALink)
{
    Track t(kTrack);
    QFile::setPermissions(t.path, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ReadGroup);
    writeFile(t.temp, "left over from an earlier run");
    bool tempWasGone = false;
    ASSERT_TRUE(t.swap([&](const QString& s, const QString& target) {
        tempWasGone = !QFileInfo::exists(target);
        return t.panel()(s, target);
    }));
    EXPECT_TRUE(tempWasGone);
    EXPECT_FALSE(QFileInfo::exists(t.temp));
    EXPECT_TRUE(t.ui.messages.empty());
    EXPECT_EQ(frameIds(readFile(t.path)), "TPE1 TXXX");
    EXPECT_TRUE(readFile(t.path).endsWith(makeMp3({2})));
    EXPECT_EQ(QFile::permissions(t.path) & 0x0FFF,
              QFileDevice::ReadUser | QFileDevice::WriteUser | QFileDevice::ReadGroup);

    // Through a link the linked file changes and the link remains.
    const QString link = t.env.path("music/link.mp3");
    ASSERT_TRUE(QFile::link(t.path, link));
    t.state.Tag2_Fields.Title = "t";
    ASSERT_TRUE(t.swap(t.panel(), {}, link));
    EXPECT_TRUE(QFileInfo(link).isSymLink());
    EXPECT_EQ(frameIds(readFile(t.path)), "TPE1 TIT2 TXXX");
}

TEST(TagSwap, EveryFailureLeavesTheTrackAsItWas)
{
    struct Row {
        const char* name;
        QByteArray original;
        std::function<bool(Track&)> run;
    };
    const auto plain = [](Track& t) { return t.swap(t.panel()); };
    const auto full = [](rlim_t bytes) {
        return [bytes](Track& t) {
            FileSizeLimit limit(bytes);
            return t.swap(t.panel());
        };
    };
    const Row rows[] = {
        {"no audio frame", tag(textFrame("TPE1", "x")) + QByteArray(8000, 'x'), plain},
        {"a foreign frame with a lower-case name", tag(frame("TXxx", "x")) + makeMp3(), plain},
        {"a data folder that cannot be written", kTrack,
         [](Track& t) {
             writeFile(t.env.path("blocker"), "a file, not a folder");
             return t.swap(t.panel(), t.env.path("blocker/"));
         }},
        {"the disk full at the header", kTrack, full(5)},
        {"the disk full in the audio", kTrack, full(20000)},
        {"the disk full one byte short", kTrack, full(rlim_t(kTrack.size()) - 1)},
        {"a writer that throws", kTrack,
         [](Track& t) {
             return t.swap([](const QString&, const QString& target) -> bool {
                 writeFile(target, "half");
                 throw std::runtime_error("boom");
             });
         }},
        {"a swap that cannot put a file over a folder", kTrack,
         [](Track& t) {
             QDir().mkpath(t.env.path("music/folder.mp3/inside"));
             return t.swap([&t](const QString&, const QString& target) { return t.panel()(t.path, target); }, {},
                           t.env.path("music/folder.mp3"));
         }},
    };
    for (const Row& r : rows) {
        Track t(r.original);
        EXPECT_FALSE(r.run(t)) << r.name;
        EXPECT_EQ(readFile(t.path), r.original) << r.name;
        EXPECT_FALSE(QFileInfo::exists(t.temp)) << r.name;
        ASSERT_EQ(t.ui.messages.size(), 1u) << r.name;
        EXPECT_EQ(t.ui.messages[0].text, "An error occured whilst trying updating Tag3v2, changes are discarded");
        EXPECT_EQ(t.ui.messages[0].title, "Tag update error");
        EXPECT_EQ(t.rereads, 1) << r.name;
    }
    // A caller that tells the user itself passes its own text, or none.
    Track quiet(tag(textFrame("TPE1", "x")));
    EXPECT_FALSE(Write_Through_Temp(quiet.data, quiet.path, quiet.ui, quiet.panel(), {}, QString()));
    EXPECT_TRUE(quiet.ui.messages.empty());
}

TEST(TagSwap, AcrossFilesystemsTheCopyLandsWholeOrNotAtAll)
{
    Track t(kTrack);
    struct stat shm {}, here {};
    if (stat("/dev/shm", &shm) != 0 || stat(QFile::encodeName(t.path).constData(), &here) != 0
        || shm.st_dev == here.st_dev)
        GTEST_SKIP() << "no second filesystem to swap across";
    const QTemporaryDir other(QStringLiteral("/dev/shm/sonorit-swap-XXXXXX"));
    const QString shmData = other.path() + QLatin1Char('/');

    // The rename cannot cross; a full disk stops the copy beside the old file.
    std::optional<FileSizeLimit> limit;
    const auto writeThenFillTheDisk = [&](const QString& s, const QString& target) {
        return t.panel()(s, target) && (limit.emplace(1000), true);
    };
    EXPECT_FALSE(t.swap(writeThenFillTheDisk, shmData));
    limit.reset();
    EXPECT_EQ(readFile(t.path), t.original);
    EXPECT_EQ(QDir(t.env.path("music")).entryList(QDir::Files), QStringList("track.mp3"));

    ASSERT_TRUE(t.swap(t.panel(), shmData));
    EXPECT_EQ(frameIds(readFile(t.path)), "TPE1 TXXX");
    EXPECT_FALSE(QFileInfo::exists(shmData + "Temp.mp3"));
}
