#pragma once
// SuperTagging, the album tagger's modal window: 25 rows of number, artist
// and title over the album's tracks with a scroll bar beyond 25, the
// album-wide boxes, the cover and the buttons. The core's SuperTagging model
// holds the state and does the work; the window shows it.
#include <QDialog>
#include <array>
#include <functional>

#include "tagedit/album_tagger.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QScrollBar;

namespace sonorit::ui {

class SuperTaggingWindow : public QDialog {
public:
    SuperTaggingWindow(TagEditContext& edit, QWidget* parent);
    SuperTagging& model() { return model_; }
    // The controls were built for the model's tracks: show them.
    void showModel();
    // The write (CommandOK) runs through this, so that the caller can hold
    // the library's lock around it.
    void setWriteRunner(std::function<void(const std::function<void()>&)> runner) { runner_ = std::move(runner); }

    void reject() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    struct Row {
        QLabel* number;    // LabelNumber
        QLineEdit* va;     // TextVA
        QLineEdit* song;   // TextSong
    };
    QWidget* buildRows();
    QWidget* buildAlbumSide();
    void connectControls();
    void showRows();
    void showCover();
    void showProgress();
    void mark(int row);
    void rowStep(int row, int step, QLineEdit* from);
    void commandOK();

    SuperTagging model_;
    std::function<void(const std::function<void()>&)> runner_;
    bool writing_ = false;
    std::array<Row, SuperTagging::Visible_Rows> rows_{};
    QWidget* frame_ = nullptr;  // everything the write disables
    QScrollBar* scroll_;        // VScroll1
    QLineEdit* artist_;         // TextArtist
    QLineEdit* album_;          // TextAlbum
    QLineEdit* year_;           // TextYear
    QLineEdit* genreText_;      // TextGenre
    QComboBox* genre_;          // Combo_Genre
    QCheckBox* va_;             // CheckVA
    QComboBox* coverCombo_;     // ComboCover
    QPushButton* browse_;       // CommandBrowseCover
    QLabel* cover_;             // TagCover
    QLineEdit* count_;          // TextTrackCount
    QPushButton* plus_;         // CommandTrackPlus
    QPushButton* minus_;        // CommandTrackMin
    QPushButton* up_;           // CommandUp
    QPushButton* down_;         // CommandDown
    QPushButton* addTracks_;    // cmdAddTracks
    QPushButton* removeTrack_;  // cmdRemoveTrack
    QPushButton* ok_;           // CommandOK
    QPushButton* cancel_;       // CommandCancel
    QLabel* labelName_;         // LabelName
    QProgressBar* progress_;    // ProgressBar1
};

class TagPanelsView;

// CommandAlbumTag and CommandSuperTag of FrameTag2: each finds its rows
// and, when there are any, opens the window over them. When the track on
// show in the panels was written, the panels read it anew.
void Bind_Album_Tagger(TagPanelsView& panels, QWidget* window);

}  // namespace sonorit::ui
