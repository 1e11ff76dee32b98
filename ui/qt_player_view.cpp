#include "qt_player_view.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QImageReader>
#include <QTreeView>

#include "cpv_slider.h"
#include "frm_play_cover.h"
#include "platform/mpris/player_controls.h"
#include "play_list_model.h"

namespace sonorit::ui {

QtPlayerView::QtPlayerView(PlayerViewParts parts) : p_(std::move(parts)), coverPict_(Default_Cover()) {}

void QtPlayerView::changed()
{
    if (changed_)
        changed_();
}

void QtPlayerView::showSong(const QString& text) { p_.panel.song->setText(text); }
void QtPlayerView::showTimerText(const QString& text) { p_.panel.timerText->setText(text); }

void QtPlayerView::setTimeSliderMax(int max)
{
    // A track shorter than a second still gets a rail of one.
    p_.panel.time->setMax(std::max(max, p_.panel.time->Min() + 1));
}

void QtPlayerView::setTimeSliderValue(int value)
{
    cpvSlider* time = p_.panel.time;
    time->setValue(std::clamp(value, time->Min(), time->Max()));
}

void QtPlayerView::setTimeSliderTip(const QString& tip) { p_.panel.time->setToolTip(tip); }

void QtPlayerView::setVolumeSlider(int value, const QString& tip)
{
    p_.panel.volume->setValue(value);
    p_.panel.volume->setToolTip(tip);
}

void QtPlayerView::setCoverVolumeSlider(int value, const QString& tip)
{
    if (cover_)
        cover_->setVolume(value, tip);
}

void QtPlayerView::setBalanceTip(const QString& tip) { p_.panel.balance->setToolTip(tip); }

void QtPlayerView::showMute(bool muted) { p_.panel.mute->setPixmap(muted ? p_.panel.nosound : p_.panel.sound); }

void QtPlayerView::setLibPlayVisible(bool visible) { p_.panel.libPlay->setVisible(visible); }

void QtPlayerView::setCycleColours(Rgb fore, Rgb inverse)
{
    for (size_t i = 0; i < p_.panel.bars.size(); ++i) {
        const Rgb c = i < 2 ? fore : inverse;
        QWidget* bar = p_.panel.bars[i];
        QPalette pal = bar->palette();
        pal.setColor(QPalette::Window, QColor(c.r, c.g, c.b));
        bar->setPalette(pal);
    }
}

void QtPlayerView::playListRowAppended(int) { p_.model->rowAppended(); }
void QtPlayerView::playListRowRemoved(int) { p_.model->reset(); }
void QtPlayerView::playListRowChanged(int row) { p_.model->rowChanged(row); }
void QtPlayerView::playListCleared() { p_.model->reset(); }
void QtPlayerView::playListReset() { p_.model->reset(); }

void QtPlayerView::playListRowSelected(int row)
{
    const QModelIndex index = p_.model->index(row, 0);
    if (!index.isValid())
        return;
    p_.playList->setCurrentIndex(index);
    p_.playList->scrollTo(index);
}

void QtPlayerView::setPlayListShielded(bool shielded)
{
    p_.playShield->setVisible(shielded);
    p_.playList->setVisible(!shielded);
    p_.playList->setEnabled(!shielded);
    p_.playListMenu->setEnabled(!shielded);
}

void QtPlayerView::setExportEnabled(bool enabled)
{
    if (p_.exportEntry)
        p_.exportEntry->setEnabled(enabled);
}

void QtPlayerView::showPlayCover(const QString& jpegPath)
{
    if (jpegPath.isEmpty()) {
        coverPict_ = Default_Cover();
    } else {
        QImageReader reader(jpegPath);
        reader.setScaledSize(QSize(200, 200));
        const QImage image = reader.read();
        // A picture the toolkit cannot load leaves the one shown.
        if (image.isNull())
            return;
        coverPict_ = QPixmap::fromImage(image);
    }
    p_.panel.cover->setPixmap(coverPict_);
    coverPath_ = jpegPath;
    if (mpris_) {
        mpris_->coverShown(jpegPath);
        changed();
    }
}

void QtPlayerView::setImageSaveEnabled(bool enabled)
{
    if (cover_)
        cover_->setImageSaveEnabled(enabled);
}

void QtPlayerView::coverWindowTakePlayPicture()
{
    if (cover_)
        cover_->takePicture(coverPict_);
}

void QtPlayerView::setCoverWindowCaption(const QString& caption)
{
    if (cover_)
        cover_->setCaption(caption);
}

void QtPlayerView::prepareCoverWindowLyrics(bool hasLyrics)
{
    if (cover_)
        cover_->prepareLyrics(hasLyrics);
}

void QtPlayerView::setCoverWindowRandomTick(bool ticked)
{
    if (cover_)
        cover_->setRandomTick(ticked);
}

void QtPlayerView::setCoverWindowLoopTick(bool ticked)
{
    if (cover_)
        cover_->setLoopTick(ticked);
}

void QtPlayerView::beep() { QApplication::beep(); }

void QtPlayerView::trackStarted(const TrackStart& start)
{
    // The player shows a track's cover before it tells of the start.
    if (mpris_) {
        mpris_->trackStarted(start);
        mpris_->coverShown(coverPath_);
    }
    changed();
}

void QtPlayerView::playbackStopped()
{
    if (mpris_)
        mpris_->stopped();
    changed();
}

void QtPlayerView::playbackPaused(bool) { changed(); }

}  // namespace sonorit::ui
