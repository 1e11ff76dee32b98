#pragma once
// The player: plays the playlist's entries one after another through a new
// media graph per track, or one library track directly (library play). It
// never hands a library file to the graph but a copy stripped of its tag
// ("Play01.mp3" and "Play02.mp3" alternating, "Play00.mp3" for library
// play), and it finds the end of a track by the once-a-second position poll.
#include <QString>
#include <memory>

#include "playback/playback_context.h"

namespace sonorit {

class Player {
public:
    explicit Player(PlaybackContext context);
    ~Player();
    Player(const Player&) = delete;
    Player& operator=(const Player&) = delete;

    PlaybackContext& context() { return c_; }
    PlaybackState& state() { return c_.play; }

    // The buttons, also called by the cover window's menu and other commands.
    void Play_Track();
    void Pause_Track();
    void Stop_Track();
    void Next_Track();
    void Previous_Track();
    // `index` is the 1-based row of MP3_List.
    void Play_Library_Track(int index, const QString& path);

    // Double click on a Play_List row (0-based row; -1 for none selected).
    void playListDoubleClick(int row);
    // CheckRandom and CheckLoop clicked with their new values.
    void setRandom(bool on);
    void setLoop(bool on);

    // Sliders and the mute picture. The value handlers are the Click and
    // ValueChanged events alike.
    void volumeSliderChanged(int value);       // main window, 0..100
    void coverVolumeSliderChanged(int value);  // cover window
    void balanceSliderChanged(int value);      // -50..50
    void muteClicked();
    void timeSliderClick(int value);           // seeks while playing
    void timeSliderValueChanged(int value);    // seeks only while dragged
    void timeSliderMouseDown();
    void timeSliderMouseUp();
    // The volume formula: 0 -> -7000, 100 -> 0.
    static int volumeLevel(int sliderValue) { return sliderValue * 70 - 7000; }

    // The main timer's player work: every tick the colour cycle and the
    // marquee, on counts 0 and 5 the position work (end of track included).
    void colourCycle();
    void marquee();
    void positionWork();

    // The graph's state, Stopped when there is no graph or it cannot tell.
    GraphState graphState();
    // Seconds into the running track; nothing without a graph. The lyric
    // clock reads it.
    std::optional<double> currentPosition();
    bool hasGraph() const { return graph_ != nullptr; }

    // The copy names in the data folder.
    QString copyPath(int number) const;  // "Play00.mp3" .. "Play02.mp3"

    // Selects the row of the entry (from 1) in Play_List and makes it visible.
    void PlayFind(int index);

private:
    void stepLibrary(int step);
    // A track that cannot start: stopped, and the next one tried. Nested
    // failures unwind to one loop, so a list of broken files cannot exhaust
    // the stack, and a looping list of nothing but broken files ends.
    void skipBroken();
    bool startGraph(const QString& renderTarget);
    void applyVolume();
    void volumeFromSlider(int value, bool cover);
    void releaseGraph();
    int roundedSeconds(double seconds) const;

    PlaybackContext c_;
    std::unique_ptr<MediaGraph> graph_;
    bool skipping_ = false;
    bool skipAgain_ = false;
};

}  // namespace sonorit
