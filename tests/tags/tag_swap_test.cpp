// Every tag write goes through "Temp.mp3": whatever fails, the track stays as it was.
#include <QElapsedTimer>
#include <QFileInfo>
#include <chrono>
#include <fcntl.h>
#include <sys/file.h>
#include <thread>
#include <unistd.h>
#include <csignal>
#include <optional>
#include <sys/resource.h>
#include <sys/stat.h>

#include "fixtures.h"
#include "tags/tag_swap.h"
#include "tests/support/file_size_limit.h"
#include "tests/support/scripted_ui.h"

using namespace sonorit;
using namespace sonorit::test;

namespace {
const QByteArray kTxxx = frame("TXXX", QByteArray("\0k\0v", 4));
const QByteArray kTrack = tag(textFrame("TPE1", "Old") + kTxxx) + makeMp3({2});

struct Track {
    TempEnv env;
    QString data = env.path("data/"), music = env.path("music/"), path = music + "track.mp3";
    TagState state;
    ScriptedUi ui;
    int rereads = 0;

    explicit Track(const QByteArray& bytes = kTrack)
    {
        QDir().mkpath(data);
        QDir().mkpath(music);
        writeFile(path, bytes);
        state.Tag2_Fields.Artist = "New";
    }
    bool panel(const QString& s, const QString& t) { return Write_Tag2_Panel(state, defaultTagOptions(), s, t); }
    bool swap(Tag2FileWriter writer = {}, const QString& folder = {}, const QString& file = {})
    {
        if (!writer)
            writer = [this](const QString& s, const QString& t) { return panel(s, t); };
        return Write_Through_Temp(folder.isEmpty() ? data : folder, file.isEmpty() ? path : file, ui, writer,
                                  [this] { ++rereads; });
    }
    QStringList files() const { return QDir(data).entryList(QDir::Files) + QDir(music).entryList(QDir::Files); }
};
}  // namespace

TEST(TagSwap, ASuccessfulWriteReplacesTheTrackHereOrAcrossFilesystems)
{
    Track t;
    const auto mode = QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ReadGroup;
    QFile::setPermissions(t.path, mode);
    writeFile(t.data + "Temp.mp3", "left over from an earlier run");
    ASSERT_TRUE(t.swap([&](auto& source, auto& temp) { return !QFile::exists(temp) && t.panel(source, temp); }));
    EXPECT_EQ(readFile(t.path), tag(textFrame("TPE1", "New") + kTxxx) + makeMp3({2}));
    EXPECT_EQ(QFile::permissions(t.path), mode | QFileDevice::ReadUser | QFileDevice::WriteUser);
    EXPECT_EQ(t.files(), QStringList("track.mp3"));
    EXPECT_TRUE(t.ui.messages.empty());
    // Through a link the linked file changes and the link remains.
    ASSERT_TRUE(QFile::link(t.path, t.music + "link.mp3"));
    t.state.Tag2_Fields.Title = "t";
    ASSERT_TRUE(t.swap({}, {}, t.music + "link.mp3"));
    EXPECT_TRUE(QFileInfo(t.music + "link.mp3").isSymLink());
    EXPECT_EQ(frameIds(readFile(t.path)), "TPE1 TIT2 TXXX");

    // Across filesystems the copy lands beside the old file, and a full disk stops it there.
    struct stat shm {}, here {};
    if (stat("/dev/shm", &shm) != 0 || stat(QFile::encodeName(t.path).constData(), &here) != 0
        || shm.st_dev == here.st_dev)
        GTEST_SKIP() << "no second filesystem to swap across";
    const QTemporaryDir other(QStringLiteral("/dev/shm/sonorit-swap-XXXXXX"));
    const QByteArray before = readFile(t.path);
    std::optional<FileSizeLimit> limit;
    const auto writeThenFillTheDisk = [&](const QString& s, const QString& temp) {
        return t.panel(s, temp) && (limit.emplace(1000), true);
    };
    EXPECT_FALSE(t.swap(writeThenFillTheDisk, other.path() + '/'));
    limit.reset();
    EXPECT_EQ(readFile(t.path), before);
    EXPECT_EQ(t.files(), QStringList({"link.mp3", "track.mp3"}));
    t.state.Tag2_Fields.Title = "across";
    ASSERT_TRUE(t.swap({}, other.path() + '/'));
    EXPECT_EQ(readFile(t.path), tag(textFrame("TPE1", "New") + textFrame("TIT2", "across") + kTxxx) + makeMp3({2}));
    EXPECT_TRUE(QDir(other.path()).isEmpty());
}

TEST(TagSwap, EveryFailureLeavesTheTrackAsItWas)
{
    const auto full = [](rlim_t bytes) { return [bytes](Track& t) { FileSizeLimit limit(bytes); return t.swap(); }; };
    const std::tuple<const char*, QByteArray, std::function<bool(Track&)>> rows[] = {
        {"no audio frame", tag(textFrame("TPE1", "x")) + QByteArray(8000, 'x'), [](Track& t) { return t.swap(); }},
        {"a data folder that cannot be written", kTrack, [](Track& t) {
             writeFile(t.env.path("blocker"), "a file, not a folder");
             return t.swap({}, t.env.path("blocker/"));
         }},
        {"the disk full at the header", kTrack, full(5)},
        {"the disk full in the audio", kTrack, full(20000)},
        {"the disk full one byte short", kTrack, full(rlim_t(kTrack.size()) - 1)},
        {"a writer that throws", kTrack, [](Track& t) {
             return t.swap([](const QString&, const QString& temp) -> bool { writeFile(temp, "half"); throw 1; });
         }},
        {"a swap that cannot put a file over a folder", kTrack, [](Track& t) {
             QDir().mkpath(t.music + "folder.mp3/inside");
             const auto writer = [&t](const QString&, const QString& temp) { return t.panel(t.path, temp); };
             return t.swap(writer, {}, t.music + "folder.mp3");
         }},
    };
    for (const auto& [name, original, run] : rows) {
        Track t(original);
        EXPECT_FALSE(run(t)) << name;
        EXPECT_EQ(readFile(t.path), original) << name;
        EXPECT_EQ(t.files(), QStringList("track.mp3")) << name;
        ASSERT_EQ(t.ui.messages.size(), 1u) << name;
        EXPECT_EQ(t.ui.messages[0].text, "An error occured whilst trying updating Tag3v2, changes are discarded");
        EXPECT_EQ(t.ui.messages[0].title, "Tag update error");
        EXPECT_EQ(t.rereads, 1) << name;
    }
}

TEST(TagSwap, WritesThroughOneDataFolderTakeTurns)
{
    // Another program is writing through "Temp.mp3" for a moment: this write
    // waits for it instead of taking its file.
    Track t;
    const int other = ::open(QFile::encodeName(t.data + ".Temp.mp3.lock").constData(), O_RDWR | O_CREAT, 0666);
    ASSERT_EQ(::flock(other, LOCK_EX), 0);
    writeFile(t.data + "Temp.mp3", "the other program's track");
    std::thread release([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        EXPECT_EQ(readFile(t.data + "Temp.mp3"), "the other program's track");
        QFile::remove(t.data + "Temp.mp3");
        ::close(other);
    });
    QElapsedTimer took;
    took.start();
    EXPECT_TRUE(t.swap());
    release.join();
    EXPECT_GE(took.elapsed(), 250);
    EXPECT_EQ(readFile(t.path), tag(textFrame("TPE1", "New") + kTxxx) + makeMp3({2}));
}
