#pragma once
// A player on a fake media graph, with a recording view, in a private HOME.
#include <QFile>
#include <QSet>
#include <memory>
#include <vector>

#include "library/library_state.h"
#include "playback/dup_scan.h"
#include "playback/player.h"
#include "playback/playlist_commands.h"
#include "playback/playlist_files.h"
#include "tests/support/qt_gtest_print.h"
#include "tests/support/scripted_ui.h"
#include "tests/support/tagged_mp3.h"
#include "tests/support/temp_env.h"

namespace sonorit::test {

// What every graph made so far was asked, and how the next ones behave.
struct GraphScript {
    QStringList rendered;        // the files handed to renderFile, in order
    QSet<QString> unplayable;    // renderFile fails for these
    int failRenders = 0;         // the next so many renderFile calls fail
    double duration = 120;
    std::vector<int> volumes;    // every setVolume
    std::vector<int> balances;
    std::vector<double> seeks;
    int live = 0;                // graphs not yet destroyed
};

class FakeGraph : public MediaGraph {
public:
    explicit FakeGraph(GraphScript& s) : s_(s) { ++s_.live; }
    ~FakeGraph() override { --s_.live; }
    bool renderFile(const QString& path) override
    {
        s_.rendered << path;
        if (s_.failRenders > 0) {
            --s_.failRenders;
            return false;
        }
        return !s_.unplayable.contains(path) && QFile::exists(path);
    }
    bool run() override { state_ = GraphState::Running; return true; }
    bool pause() override { state_ = GraphState::Paused; return true; }
    bool stop() override { state_ = GraphState::Stopped; return true; }
    std::optional<GraphState> state(int) override { return state_; }
    std::optional<double> duration() override { return s_.duration; }
    std::optional<double> position() override { return position_; }
    bool setPosition(double seconds) override { s_.seeks.push_back(seconds); position_ = seconds; return true; }
    bool setVolume(int v) override { s_.volumes.push_back(v); return true; }
    bool setBalance(int b) override { s_.balances.push_back(b); return true; }

    double position_ = 0;
    GraphState state_ = GraphState::Stopped;

private:
    GraphScript& s_;
};

class FakeGraphs : public MediaGraphFactory {
public:
    GraphScript script;
    FakeGraph* last = nullptr;
    std::unique_ptr<MediaGraph> create() override
    {
        auto g = std::make_unique<FakeGraph>(script);
        last = g.get();
        return g;
    }
};

struct RecordingView : PlayerView {
    std::vector<TrackStart> starts;
    std::vector<int> skipped, ended;
    QStringList covers, events;
    int selectedRow = -1;
    void trackStarted(const TrackStart& s) override { starts.push_back(s); }
    void trackSkipped(int entry) override { skipped.push_back(entry); }
    void trackEnded(int entry) override { ended.push_back(entry); }
    void showPlayCover(const QString& path) override { covers << path; }
    void playListRowSelected(int row) override { selectedRow = row; }
    void showTimerText(const QString& t) override { events << "timer:" + t; }
    void showSong(const QString& t) override { events << "song:" + t; }
    void setLibPlayVisible(bool v) override { events << QString("lib:%1").arg(v); }
    void setCoverVolumeSlider(int v, const QString& tip) override { events << QString("cover-volume:%1 %2").arg(v).arg(tip); }
    void setVolumeSlider(int v, const QString& tip) override { events << QString("volume:%1 %2").arg(v).arg(tip); }
};

// A player in a private home on the graphs `Graphs` makes, telling `View`.
template <typename Graphs, typename View>
struct PlayerRig {
    TempEnv env;
    AppState app{env.paths()};
    LibraryState lib;
    PlaybackState play;
    ScriptedUi ui;
    Graphs graphs;
    View view;
    Player player{PlaybackContext{app, lib, play, ui, graphs, view}};
    PlaylistCommands cmds{player};
};

struct PlayerFixture : PlayerRig<FakeGraphs, RecordingView> {
    PlaylistFiles files{cmds};

    // A real short MP3 with a tag, under the temporary HOME.
    QString mp3(const QString& rel, const QString& artist = "Artist", const QString& title = "Title",
                const QString& album = "Album", const QString& track = "1")
    {
        const QString path = env.path(rel);
        TrackTags t;
        t.artist = artist;
        t.title = title;
        t.album = album;
        t.track = track;
        Mp3Recipe r;
        r.seconds = 0.3;
        writeTaggedMp3(path, t, r);
        return path;
    }
    // A file named .mp3 without a single audio frame.
    QString broken(const QString& rel)
    {
        const QString path = env.path(rel);
        writeFile(path, QByteArray(3000, 'x'));
        return path;
    }
    // A library row for the file.
    int libraryRow(const QString& path, const QString& artist, const QString& album, const QString& track,
                   const QString& title, const QString& va = "No")
    {
        TrackRow row;
        row[ColArtist] = artist;
        row[ColAlbum] = album;
        row[ColTrack] = track;
        row[ColTitle] = title;
        row[ColTime] = "00:01";
        row[ColVA] = va;
        const int slash = path.lastIndexOf('/');
        row[ColFolder] = path.left(slash);
        row[ColFilename] = path.mid(slash + 1);
        lib.MP3_List.append(row);
        return lib.MP3_List.count() - 1;
    }
    // Entries added as library rows without playing.
    void entries(const QStringList& paths)
    {
        for (const QString& p : paths)
            cmds.Add_To_PlayList(p, -1);
    }
    QString copy(int n) const { return player.copyPath(n); }
    FakeGraph& graph() { return *graphs.last; }
};

// A draw that walks a prepared list of values, then repeats the last.
inline std::function<double()> draws(std::vector<double> values)
{
    auto at = std::make_shared<size_t>(0);
    return [values, at] {
        const double v = values[std::min(*at, values.size() - 1)];
        ++*at;
        return v;
    };
}

}  // namespace sonorit::test
