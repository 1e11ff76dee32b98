#include "frm_play_cover.h"

#include <QCloseEvent>
#include <QFileInfo>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QLabel>
#include <QMenuBar>
#include <QScreen>
#include <QTimer>
#include <QVBoxLayout>

#include "cpv_slider.h"
#include "playback/covers.h"
#include "playback/font_fit.h"
#include "playback/player.h"
#include "shell/file_copy.h"
#include "shell/ui_port.h"
#include "window_geometry.h"

namespace sonorit::ui {

namespace {

const QString kCaption = QStringLiteral("Cover Image (current playing track)");
constexpr int kLineLeft = 16;    // 240 units of the design
constexpr int kLineOffset = 2;   // the white and grey lines stand off their shadows

// Text measured in the window's font family at a requested point size.
class FontMeasure : public TextMeasure {
public:
    explicit FontMeasure(QFont font) : font_(std::move(font)) {}
    double applySize(double requested) override
    {
        font_.setPointSizeF(requested);
        return QFontInfo(font_).pointSizeF();
    }
    double textWidth(double size, const QString& text) override
    {
        font_.setPointSizeF(size);
        return QFontMetricsF(font_).horizontalAdvance(text);
    }
    double textHeight(double size, const QString&) override
    {
        font_.setPointSizeF(size);
        return QFontMetricsF(font_).height();
    }

private:
    QFont font_;
};

}  // namespace

FrmPlayCover::FrmPlayCover(Player& player, UiPort& ui, CoverWindowHooks hooks, QWidget* mainWindow)
    : QMainWindow(mainWindow,
                  Qt::Window | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowMaximizeButtonHint
                      | Qt::WindowCloseButtonHint | Qt::WindowStaysOnTopHint),
      player_(player),
      ui_(ui),
      mainWindow_(mainWindow),
      image_(new QLabel),
      volume_(new cpvSlider),
      volumeLabel_(new QLabel(QStringLiteral("Volume"))),
      captionTimer_(new QTimer(this)),
      lyricTimer_(new QTimer(this))
{
    setObjectName(QStringLiteral("frmPlayCover"));
    setWindowTitle(kCaption);
    resize(420, 460);

    image_->setObjectName(QStringLiteral("Image1"));
    image_->setScaledContents(true);  // stretched to the window
    image_->setMinimumSize(60, 60);
    image_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    image_->installEventFilter(this);
    // Shadow, next line's shadow, line, next line, as the design numbers them.
    static const QColor colours[4] = {Qt::black, Qt::black, Qt::white, QColor(192, 192, 192)};
    for (int i : {0, 1, 2, 3}) {
        auto* line = new QLabel(image_);
        line->setObjectName(QStringLiteral("Label1_%1").arg(i));
        QPalette pal = line->palette();
        pal.setColor(QPalette::WindowText, colours[i]);
        line->setPalette(pal);
        line->hide();
        lines_[size_t(i)] = line;
    }

    volume_->setObjectName(QStringLiteral("Volume_Slider"));
    volume_->setOrientation(cpvSlider::Horizontal);
    volume_->setMax(100);
    volume_->setTipSuffix(QStringLiteral("%"));
    volume_->setRailStyle(10);
    volumeLabel_->setObjectName(QStringLiteral("lblVolume"));
    volume_->hide();
    volumeLabel_->hide();
    connect(volume_, &cpvSlider::Click, this, [this] { player_.coverVolumeSliderChanged(volume_->Value()); });
    connect(volume_, &cpvSlider::ValueChanged, this, [this] { player_.coverVolumeSliderChanged(volume_->Value()); });

    auto* central = new QWidget;
    auto* column = new QVBoxLayout(central);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(image_, 1);
    auto* volumeRow = new QHBoxLayout;
    volumeRow->setContentsMargins(6, 2, 6, 2);
    volumeRow->addWidget(volumeLabel_);
    volumeRow->addWidget(volume_, 1);
    column->addLayout(volumeRow);
    setCentralWidget(central);

    captionTimer_->setObjectName(QStringLiteral("Timer1"));
    captionTimer_->setInterval(1000);
    captionTimer_->setSingleShot(true);
    connect(captionTimer_, &QTimer::timeout, this,
            [this] { setWindowTitle(player_.state().Cover_Caption); });
    lyricTimer_->setObjectName(QStringLiteral("Timer2"));
    lyricTimer_->setInterval(100);
    connect(lyricTimer_, &QTimer::timeout, this, &FrmPlayCover::lyricTick);
    buildMenus(std::move(hooks));
}

void FrmPlayCover::buildMenus(CoverWindowHooks hooks)
{
    const auto add = [this](QMenu* menu, const char* name, const char* text, auto handler) {
        QAction* a = menu->addAction(QString::fromUtf8(text));
        a->setObjectName(QLatin1String(name));
        connect(a, &QAction::triggered, this, handler);
        return a;
    };
    QMenu* image = menuBar()->addMenu(QStringLiteral("&Image"));
    image->setObjectName(QStringLiteral("mnu_image"));
    imageSave_ = add(image, "mnu_image_save", "&Save As...", [this] { saveImage(); });
    add(image, "mnu_image_close", "&Close", [this] { close(); });

    QMenu* playerMenu = menuBar()->addMenu(QStringLiteral("&Player"));
    playerMenu->setObjectName(QStringLiteral("mnu_player"));
    add(playerMenu, "mnu_player_play", "&Play", [this] { player_.Play_Track(); });
    add(playerMenu, "mnu_player_pause", "P&ause", [this] { player_.Pause_Track(); });
    add(playerMenu, "mnu_player_stop", "&Stop", [this] { player_.Stop_Track(); });
    add(playerMenu, "mnu_player_next", "&Next", [this] { player_.Next_Track(); });
    add(playerMenu, "mnu_player_previous", "Pre&vious", [this] { player_.Previous_Track(); });

    QMenu* list = menuBar()->addMenu(QStringLiteral("Play&List"));
    list->setObjectName(QStringLiteral("mnu_PlayList"));
    add(list, "mnu_PlayList_Open", "&Open...", [open = hooks.openPlaylist] { open(); });
    random_ = add(list, "mnu_PlayList_Random", "&Random", [this, set = hooks.setRandomBox] {
        set(random_->isChecked());
    });
    loop_ = add(list, "mnu_PlayList_Loop", "&Loop", [this, set = hooks.setLoopBox] { set(loop_->isChecked()); });
    random_->setCheckable(true);
    loop_->setCheckable(true);

    QMenu* volume = menuBar()->addMenu(QStringLiteral("&Volume"));
    volume->setObjectName(QStringLiteral("mnu_Volume"));
    volumeShow_ = add(volume, "mnu_Volume_Show", "&Show", [this] {
        volume_->setVisible(volumeShow_->isChecked());
        volumeLabel_->setVisible(volumeShow_->isChecked());
    });
    volumeShow_->setCheckable(true);

    QMenu* lyrics = menuBar()->addMenu(QStringLiteral("L&yrics"));
    lyrics->setObjectName(QStringLiteral("mnu_Lyrics"));
    lyricsMenu_ = lyrics->menuAction();
    lyricsMenu_->setObjectName(QStringLiteral("mnu_Lyrics"));
    lyricsOn_ = add(lyrics, "mnu_Lyrics_On", "&On", [this] {
        player_.state().Lyrics_On = lyricsOn_->isChecked();
        showLyricLabels(lyricsOn_->isChecked());
    });
    lyricsOn_->setCheckable(true);
    lyricsOn_->setChecked(player_.state().Lyrics_On);
}

void FrmPlayCover::open(const QPixmap& coverPlay, bool loop, bool random, int volume, const QString& volumeTip)
{
    PlaybackState& s = player_.state();
    takePicture(coverPlay);
    s.Cover_Window_Open = true;
    setImageSaveEnabled(QFileInfo::exists(Playing_Cover_Path(player_.context().app)));
    random_->setChecked(random);
    loop_->setChecked(loop);
    s.Volume_Lock_Main = true;
    setVolume(volume, volumeTip);
    s.Volume_Lock_Main = false;
    s.Cover_Caption = windowTitle();
    prepareLyrics(s.Has_Lyrics);

    // Centred on the main window, but whole on its screen with room for a
    // title bar (the position is the frame's).
    const QRect available = mainWindow_->screen()->availableGeometry();
    resize(size().boundedTo(available.size() - QSize(16, 48)));
    QRect frame(QPoint(), size() + QSize(0, 32));
    frame.moveCenter(mainWindow_->frameGeometry().center());
    move(Fit_Window_Rect(frame, available).topLeft());
    show();
    raise();
}

void FrmPlayCover::closeEvent(QCloseEvent* event)
{
    player_.state().Cover_Window_Open = false;
    lyricTimer_->stop();
    event->accept();
}

bool FrmPlayCover::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == image_ && event->type() == QEvent::MouseButtonDblClick) {
        close();
        return true;
    }
    return QMainWindow::eventFilter(watched, event);
}

void FrmPlayCover::takePicture(const QPixmap& picture) { image_->setPixmap(picture); }

void FrmPlayCover::setCaption(const QString& caption) { setWindowTitle(caption); }

void FrmPlayCover::setImageSaveEnabled(bool enabled) { imageSave_->setEnabled(enabled); }
void FrmPlayCover::setRandomTick(bool ticked) { random_->setChecked(ticked); }
void FrmPlayCover::setLoopTick(bool ticked) { loop_->setChecked(ticked); }

void FrmPlayCover::setVolume(int value, const QString& tip)
{
    volume_->setValue(value);
    volume_->setToolTip(tip);
}

void FrmPlayCover::prepareLyrics(bool hasLyrics)
{
    hasLyrics_ = hasLyrics;
    lyricsMenu_->setEnabled(hasLyrics);
    for (QLabel* line : lines_)
        line->clear();
    showLyricLabels(hasLyrics && lyricsOn_->isChecked());
    if (hasLyrics)
        fitLyricFont();
}

void FrmPlayCover::showLyricLabels(bool shown)
{
    for (QLabel* line : lines_)
        line->setVisible(shown);
    if (shown)
        lyricTimer_->start();
    else
        lyricTimer_->stop();
}

void FrmPlayCover::fitLyricFont()
{
    const LyricState& lyrics = player_.state().Lyrics;
    const QString longest = lyrics.Lyric_Text.at(size_t(std::clamp(lyrics.Lyric_Longest, 0,
                                                                   int(lyrics.Lyric_Text.size()) - 1)));
    FontMeasure measure(font());
    const LyricLayout layout = Fit_Lyric_Font(measure, longest, image_->width(), image_->height(), kLineOffset);
    QFont lineFont = font();
    lineFont.setPointSizeF(layout.fontSize);
    for (int i : {0, 1, 2, 3}) {
        QLabel* line = lines_[size_t(i)];
        line->setFont(lineFont);
        const int left = i >= 2 ? kLineLeft + kLineOffset : kLineLeft;
        line->setGeometry(left, layout.tops[size_t(i)], std::max(0, image_->width() - 4), layout.labelHeight);
    }
    // The white and grey lines lie over their black shadows.
    lines_[2]->raise();
    lines_[3]->raise();
}

void FrmPlayCover::resizeEvent(QResizeEvent* event)
{
    QMainWindow::resizeEvent(event);
    captionTimer_->stop();
    // The layout has given Image1 its new size only after this event.
    QTimer::singleShot(0, this, [this] {
        if (hasLyrics_)
            fitLyricFont();
        setWindowTitle(QStringLiteral("%1 X %2").arg(image_->width()).arg(image_->height()));
        captionTimer_->start();
    });
}

void FrmPlayCover::lyricTick()
{
    PlaybackState& s = player_.state();
    const auto lines = clock_.tick(s.Lyrics, s.Lyric_Pos, [this] { return player_.currentPosition(); });
    if (!lines)
        return;
    lines_[0]->setText(lines->current);
    lines_[2]->setText(lines->current);
    lines_[1]->setText(lines->next);
    lines_[3]->setText(lines->next);
}

void FrmPlayCover::saveImage()
{
    AppState& app = player_.context().app;
    const PlaybackState& s = player_.state();
    const QString source = Playing_Cover_Path(app);
    FileDialogRequest request;
    request.mode = FileDialogMode::Save;
    request.title = QStringLiteral("Save As");
    request.filterDescription = QStringLiteral("JPEG Image Files (*.jpg)");
    request.filterPattern = QStringLiteral("*.jpg");
    request.defaultExtension = QStringLiteral("jpg");
    request.startFolder = app.Art_Folder.isEmpty() ? app.paths.Pictures_Folder : app.Art_Folder;
    request.fileName = s.Now_Artist + QStringLiteral(" - ") + s.Now_Album + QStringLiteral(".jpg");
    const QString target = ui_.fileDialog(request);
    if (target.isEmpty())
        return;
    app.Art_Folder = QFileInfo(target).absolutePath();
    app.settings.SaveSetting(QStringLiteral("Folders"), QStringLiteral("Art"), app.Art_Folder);
    copyFileKeepingTime(source, target);
}

}  // namespace sonorit::ui
