#include "player.h"

#include <QFile>
#include <cmath>

#include "playback/covers.h"
#include "playback/playlist_model.h"
#include "shell/helpers.h"
#include "tags/mpeg_info.h"
#include "tags/strip.h"
#include "tags/sylt.h"

namespace sonorit {

namespace {
bool isNonMp3(const QString& path)
{
    const QString tail = path.right(3).toLower();
    return tail == QLatin1String("wav") || tail == QLatin1String("wma");
}

QString displayName(const QString& path)
{
    const QString name = Get_Path_File(path);
    return name.left(name.size() - 4);
}
}  // namespace

Player::Player(PlaybackContext context) : c_(context)
{
    bindPlayback(c_);
}

Player::~Player()
{
    if (c_.lib.Playlist_Paths == &c_.play.Play_File)
        c_.lib.Playlist_Paths = nullptr;
    if (graph_)
        graph_->stop();
}

QString Player::copyPath(int number) const
{
    return c_.app.Data_Folder() + QStringLiteral("Play0%1.mp3").arg(number);
}

int Player::roundedSeconds(double seconds) const
{
    // The old runtime rounds halves to even. A back end's nonsense (a NaN,
    // an endless stream) counts as 0 or as the largest value.
    if (!(seconds > 0))
        return 0;
    if (seconds >= 2147483647.0)
        return 2147483647;
    return static_cast<int>(std::nearbyint(seconds));
}

GraphState Player::graphState()
{
    if (!graph_)
        return GraphState::Stopped;
    return graph_->state(20).value_or(GraphState::Stopped);
}

std::optional<double> Player::currentPosition()
{
    if (!graph_)
        return std::nullopt;
    return graph_->position();
}

void Player::releaseGraph()
{
    graph_.reset();
}

void Player::applyVolume()
{
    if (graph_)
        graph_->setVolume(c_.play.Muted ? c_.play.Mute_Level : c_.play.Volume_Level);
}

bool Player::startGraph(const QString& renderTarget)
{
    releaseGraph();
    graph_ = c_.graphs.create();
    if (!graph_ || !graph_->renderFile(renderTarget) || !graph_->run())
        return false;
    const std::optional<double> duration = graph_->duration();
    c_.play.Time_Slider_Max = duration ? roundedSeconds(*duration) : 0;
    c_.view.setTimeSliderMax(c_.play.Time_Slider_Max);
    return true;
}

void Player::PlayFind(int index)
{
    if (index >= 1 && index <= c_.play.Play_List.count())
        c_.play.Play_List.select(index - 1);
}

void Player::Play_Track()
{
    PlaybackState& s = c_.play;
    if (s.CD_Panel_Open && !s.Ripper_Open)
        return;
    const GraphState st = graphState();
    if (st == GraphState::Paused)
        graph_->run();
    if (st == GraphState::Paused || st == GraphState::Running) {
        // Play on a running track only forgets which copy is in use.
        s.Now_File.clear();
        s.Now_Source.clear();
        c_.view.playbackPaused(false);
        return;
    }
    if (s.PlayList_Count == 0)
        return;
    const int index = s.currentEntry();
    if (index < 1 || index > s.PlayList_Count)
        return;
    const QString source = s.playFile(index);
    const bool nonMp3 = isNonMp3(source);

    QString target;
    bool copied = false;
    if (nonMp3) {
        if (s.Now_File.endsWith(QLatin1String("Play01.mp3")))
            QFile::remove(copyPath(2));
        else if (s.Now_File.endsWith(QLatin1String("Play02.mp3")))
            QFile::remove(copyPath(1));
        target = source;
    } else {
        // The old graph may still hold the copy it played: the new copy goes
        // to the other name.
        const int number = s.Now_File == copyPath(1) ? 2 : 1;
        target = copyPath(number);
        QFile::remove(target);
        copied = Strip_Tag2(source, target);
    }
    s.Lyric_Pos = 0;
    s.Has_Lyrics = false;
    s.Lyrics = LyricState{};
    if (!copied && !nonMp3) {
        c_.view.trackSkipped(index);
        Stop_Track();
        skipBroken();
        return;
    }

    // A foreign playlist starts playing before its rows are read: the
    // track plays without its row, which the loading fills in afterwards.
    const bool hasRow = index <= s.Play_List.count();
    const PlayRow noRow{};
    const PlayRow& row = hasRow ? s.Play_List.row(index - 1) : noRow;
    bool ok = true;
    QString name;
    {
        PlayFind(index);
        s.Now_Artist = row[PlayArtist];
        s.Now_Album = row[PlayAlbum];
        s.Time_Total = row[PlayTime];
        name = displayName(source);
        s.Scroll_Text = name + QString(20, QLatin1Char(' '));
        if (!nonMp3) {
            TagState tags;
            tags.Read_Other_Versions = c_.app.Tag_Read_Other;
            s.Has_Lyrics = Read_Synced_Lyrics(tags, source);
            if (s.Has_Lyrics)
                s.Lyrics = std::move(tags.Lyrics);
            if (s.Cover_Window_Open)
                c_.view.prepareCoverWindowLyrics(s.Has_Lyrics);
        }
        ok = startGraph(target);
    }
    if (!ok) {
        c_.view.trackSkipped(index);
        releaseGraph();
        Stop_Track();
        skipBroken();
        s.Auto_Next = false;
        return;
    }
    applyVolume();
    s.Is_Playing = true;
    if (!nonMp3) {
        Load_Play_Cover(c_, source);
        if (s.Cover_Window_Open)
            c_.view.coverWindowTakePlayPicture();
    }
    if (s.Cover_Window_Open) {
        s.Cover_Caption = name;
        c_.view.setCoverWindowCaption(name);
    }
    s.Auto_Next = false;
    s.Now_File = target;
    s.Now_Source = source;
    c_.view.trackStarted(TrackStart{s.PlayList_Pos, index, source, target, row[PlayArtist], row[PlayAlbum],
                                    row[PlayTitle], s.Time_Slider_Max, false});
}

void Player::skipBroken()
{
    if (skipping_) {
        skipAgain_ = true;
        return;
    }
    skipping_ = true;
    int rounds = 0;
    do {
        skipAgain_ = false;
        Next_Track();
    } while (skipAgain_ && ++rounds <= c_.play.PlayList_Count);
    skipping_ = false;
    skipAgain_ = false;
}

void Player::Play_Library_Track(int index, const QString& path)
{
    PlaybackState& s = c_.play;
    Stop_Track();
    s.Lib_Play = true;
    s.Lib_Pos = index;
    s.Lib_File = path;
    c_.view.setLibPlayVisible(true);
    const QString target = copyPath(0);
    QFile::remove(target);
    if (!Strip_Tag2(path, target)) {
        c_.ui.message(path, QStringLiteral("Cannot play Library track"), Buttons::Ok, Icon::None);
        Stop_Track();
        s.Lib_Play = false;
        c_.view.setLibPlayVisible(false);
        Next_Track();
        return;
    }
    const TrackList& list = c_.lib.MP3_List;
    if (index >= 1 && index <= list.count()) {
        s.Now_Artist = list.field(index - 1, ColArtist);
        s.Now_Album = list.field(index - 1, ColAlbum);
        s.Time_Total = list.field(index - 1, ColTime);
    }
    s.Scroll_Text = displayName(path) + QString(20, QLatin1Char(' '));
    if (!startGraph(target)) {
        releaseGraph();
        Stop_Track();
        Next_Track();
        return;
    }
    applyVolume();
    s.Now_File = target;
    s.Now_Source = path;
    s.Is_Playing = true;
    Load_Play_Cover(c_, path);
    s.Auto_Next = false;
    c_.requestMenuRefresh();
    const QString title = index >= 1 && index <= list.count() ? list.field(index - 1, ColTitle) : QString();
    c_.view.trackStarted(TrackStart{index, 0, path, target, s.Now_Artist, s.Now_Album, title, s.Time_Slider_Max, true});
}

void Player::Pause_Track()
{
    const GraphState st = graphState();
    if (st == GraphState::Paused) {
        graph_->run();
        c_.view.playbackPaused(false);
    } else if (st == GraphState::Running) {
        graph_->pause();
        c_.view.playbackPaused(true);
    }
}

void Player::Stop_Track()
{
    PlaybackState& s = c_.play;
    s.Lib_Play = false;
    c_.view.setLibPlayVisible(false);
    const GraphState st = graphState();
    if (st != GraphState::Paused && st != GraphState::Running)
        return;
    graph_->stop();
    s.Scroll_Text.clear();
    c_.view.showSong(QString());
    c_.view.showTimerText(QString());
    releaseGraph();
    s.Is_Playing = false;
    c_.view.showPlayCover(QString());
    s.Volume_Level = volumeLevel(s.Volume_Slider_Value);
    if (s.Cover_Window_Open) {
        c_.view.coverWindowTakePlayPicture();
        s.Cover_Caption = QStringLiteral("Cover Image (current playing track)");
        c_.view.setCoverWindowCaption(s.Cover_Caption);
    }
    s.Now_Artist.clear();
    s.Now_Album.clear();
    c_.view.playbackStopped();
}

void Player::Next_Track()
{
    PlaybackState& s = c_.play;
    if (s.Lib_Play) {
        stepLibrary(1);
        return;
    }
    const GraphState st = graphState();
    if (st == GraphState::Paused || st == GraphState::Running) {
        // Next on the last entry without loop keeps it playing, unless the
        // player itself steps at the end of the track.
        if (!s.Loop_On && !s.Auto_Next && s.PlayList_Pos == s.PlayList_Count)
            return;
        Stop_Track();
    }
    c_.view.setTagPanelsEnabled(true);
    if (s.PlayList_Count == 0)
        return;
    ++s.PlayList_Pos;
    if (s.PlayList_Pos > s.PlayList_Count) {
        if (!s.Loop_On) {
            s.PlayList_Pos = s.PlayList_Count;
            return;
        }
        s.PlayList_Pos = 1;
    }
    Play_Track();
}

void Player::Previous_Track()
{
    PlaybackState& s = c_.play;
    if (s.Lib_Play) {
        stepLibrary(-1);
        return;
    }
    const GraphState st = graphState();
    if (st == GraphState::Paused || st == GraphState::Running)
        Stop_Track();
    if (s.PlayList_Count == 0)
        return;
    --s.PlayList_Pos;
    if (s.PlayList_Pos <= 0)
        s.PlayList_Pos = s.Loop_On ? s.PlayList_Count : 1;
    Play_Track();
}

void Player::stepLibrary(int step)
{
    PlaybackState& s = c_.play;
    TrackList& list = c_.lib.MP3_List;
    for (;;) {
        s.Lib_Pos += step;
        if (s.Lib_Pos > list.count() || s.Lib_Pos < 1)
            break;
        list.select(s.Lib_Pos - 1);
        const QString path = Library_Row_Path(list, s.Lib_Pos - 1);
        if (path.right(4).toLower() != QLatin1String(".mp3") || !File_Exists(path) || !Is_Mpeg(path))
            continue;
        s.Lib_File = path;
        Play_Library_Track(s.Lib_Pos, path);
        c_.ui.focusLibraryList();
        return;
    }
    // The playlist takes over at either end of the library.
    s.Lib_Play = false;
    c_.view.setLibPlayVisible(false);
    Stop_Track();
    if (step > 0)
        Next_Track();
    else
        Previous_Track();
}

void Player::playListDoubleClick(int row)
{
    PlaybackState& s = c_.play;
    const GraphState st = graphState();
    if (st == GraphState::Paused || st == GraphState::Running)
        Stop_Track();
    if (s.PlayList_Count == 0 || row < 0)
        return;
    if (!s.Random_On) {
        s.PlayList_Pos = row + 1;
    } else {
        for (int i = 1; i <= s.PlayList_Count; ++i)
            if (s.randomOrder(i) == row + 1) {
                s.PlayList_Pos = i;
                break;
            }
    }
    s.Lib_Play = false;
    c_.view.setLibPlayVisible(false);
    Play_Track();
}

void Player::setRandom(bool on)
{
    PlaybackState& s = c_.play;
    if (on == s.Random_On)
        return;
    s.Random_On = on;
    if (s.Cover_Window_Open)
        c_.view.setCoverWindowRandomTick(on);
    if (s.PlayList_Pos < 1)
        return;
    // The same track stays current through the change.
    if (on) {
        for (int i = 1; i <= static_cast<int>(s.Random_Order.size()); ++i)
            if (s.randomOrder(i) == s.PlayList_Pos) {
                s.PlayList_Pos = i;
                break;
            }
    } else {
        s.PlayList_Pos = s.randomOrder(s.PlayList_Pos);
    }
}

void Player::setLoop(bool on)
{
    c_.play.Loop_On = on;
    if (c_.play.Cover_Window_Open)
        c_.view.setCoverWindowLoopTick(on);
}

// Each slider follows the other; its own lock keeps the echo of the other
// from coming back.
void Player::volumeFromSlider(int value, bool cover)
{
    PlaybackState& s = c_.play;
    if (cover ? s.Volume_Lock_Main : s.Volume_Lock_Cover)
        return;
    bool& lock = cover ? s.Volume_Lock_Cover : s.Volume_Lock_Main;
    lock = true;
    s.Volume_Slider_Value = value;
    s.Volume_Level = volumeLevel(value);
    if (s.Is_Playing && !s.Muted && graph_)
        graph_->setVolume(s.Volume_Level);
    const QString tip = QString::number(value) + QLatin1Char('%');
    c_.view.setVolumeSlider(value, tip);
    if (cover || s.Cover_Window_Open)
        c_.view.setCoverVolumeSlider(value, tip);
    lock = false;
}

void Player::volumeSliderChanged(int value) { volumeFromSlider(value, false); }
void Player::coverVolumeSliderChanged(int value) { volumeFromSlider(value, true); }

void Player::balanceSliderChanged(int value)
{
    c_.play.Balance_Slider_Value = value;
    if (c_.play.Is_Playing && graph_)
        graph_->setBalance(value * 200);
    c_.view.setBalanceTip(QString::number(value));
}

void Player::muteClicked()
{
    PlaybackState& s = c_.play;
    s.Muted = !s.Muted;
    c_.view.showMute(s.Muted);
    if (!s.Is_Playing || !graph_)
        return;
    if (s.Muted) {
        s.Volume_Level = volumeLevel(s.Volume_Slider_Value);
        graph_->setVolume(s.Mute_Level);
    } else {
        graph_->setVolume(s.Volume_Level);
    }
}

void Player::timeSliderClick(int value)
{
    c_.play.Time_Slider_Value = value;
    if (c_.play.Is_Playing && graph_)
        graph_->setPosition(static_cast<double>(value));
    c_.view.setTimeSliderTip(c_.play.Time_Now);
}

void Player::timeSliderValueChanged(int value)
{
    c_.play.Time_Slider_Value = value;
    // The once-a-second write of the position work comes here too, with the
    // drag flag clear: it must not seek.
    if (c_.play.Time_Slider_Dragging)
        timeSliderClick(value);
}

void Player::timeSliderMouseDown()
{
    c_.play.Time_Slider_Dragging = true;
}

void Player::timeSliderMouseUp()
{
    c_.play.Time_Slider_Dragging = false;
}

void Player::colourCycle()
{
    Rgb& k = c_.play.Cycle_Colour;
    auto up = [](int& v) { v = std::min(v + 4, 255); };
    auto down = [](int& v) { v = std::max(v - 4, 0); };
    if (k.r == 255 && k.b == 0 && k.g < 255)
        up(k.g);
    else if (k.g == 255 && k.b == 0 && k.r > 0)
        down(k.r);
    else if (k.g == 255 && k.r == 0 && k.b < 255)
        up(k.b);
    else if (k.b == 255 && k.r == 0 && k.g > 0)
        down(k.g);
    else if (k.b == 255 && k.g == 0 && k.r < 255)
        up(k.r);
    else if (k.r == 255 && k.g == 0 && k.b > 0)
        down(k.b);
    c_.view.setCycleColours(k, Rgb{255 - k.r, 255 - k.g, 255 - k.b});
}

void Player::marquee()
{
    QString& text = c_.play.Scroll_Text;
    if (!c_.play.Is_Playing)
        return;
    if (!text.isEmpty())
        text = text.mid(1) + text.left(1);
    c_.view.showSong(text);
}

void Player::positionWork()
{
    PlaybackState& s = c_.play;
    if (!s.Is_Playing || !graph_)
        return;
    const std::optional<double> p = graph_->position();
    if (!p)
        return;
    const int rounded = roundedSeconds(*p);
    if (*p - s.Time_Slider_Value != 1.0) {
        s.Time_Slider_Value = rounded;
        c_.view.setTimeSliderValue(rounded);
    }
    s.Time_Now = Format_Play_Time(rounded);
    c_.view.showTimerText(s.Time_Now + QLatin1Char('/') + s.Time_Total);
    c_.view.setTimeSliderTip(s.Time_Now);
    c_.view.positionPolled(*p);
    const std::optional<double> d = graph_->duration();
    if (d && std::isfinite(*d) && std::floor(*d) <= rounded && s.PlayList_Count > 0) {
        s.Auto_Next = true;
        c_.view.trackEnded(s.Lib_Play ? 0 : s.currentEntry());
        Next_Track();
    }
}

}  // namespace sonorit
