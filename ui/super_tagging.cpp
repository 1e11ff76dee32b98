#include "super_tagging.h"

#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QGridLayout>
#include <QGuiApplication>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPixmap>
#include <QProgressBar>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>
#include <QWheelEvent>

#include "library/library_lock.h"
#include "player_panel.h"
#include "tag_panels_view.h"
#include "tagedit/track_follow.h"
#include "tags/id3v1.h"

namespace sonorit::ui {

namespace {

constexpr int kCoverSide = 150;  // TagCover, device-independent pixels
const char* const kRow = "row";  // the index of a row's control in its array

QPushButton* button(const char* name, const QString& text)
{
    auto* b = new QPushButton(text);
    b->setObjectName(QLatin1String(name));
    b->setAutoDefault(false);
    return b;
}

QLineEdit* box(const char* name)
{
    auto* e = new QLineEdit;
    e->setObjectName(QLatin1String(name));
    return e;
}

QLabel* caption(const QString& text, QWidget* buddy)
{
    auto* l = new QLabel(text);
    l->setBuddy(buddy);
    return l;
}

// Sets the text only when it differs, so that the cursor of the box being
// typed into stays where it is.
void setText(QLineEdit* e, const QString& text)
{
    if (e->text() != text)
        e->setText(text);
}

}  // namespace

SuperTaggingWindow::SuperTaggingWindow(TagEditContext& edit, QWidget* parent) : QDialog(parent), model_(edit)
{
    setObjectName(QStringLiteral("SuperTagging"));
    setModal(true);
    frame_ = new QWidget;
    frame_->setObjectName(QStringLiteral("FrameTracks"));
    auto* columns = new QHBoxLayout(frame_);
    columns->setContentsMargins(0, 0, 0, 0);
    columns->addWidget(buildRows(), 1);
    columns->addWidget(buildAlbumSide());

    labelName_ = new QLabel;
    labelName_->setObjectName(QStringLiteral("LabelName"));
    // A long title must not widen the window.
    labelName_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    progress_ = new QProgressBar;
    progress_->setObjectName(QStringLiteral("ProgressBar1"));
    progress_->setTextVisible(false);
    progress_->hide();
    auto* content = new QWidget;
    auto* column = new QVBoxLayout(content);
    column->setContentsMargins(8, 8, 8, 8);
    column->setSpacing(4);
    column->addWidget(frame_, 1);
    column->addWidget(labelName_);
    column->addWidget(progress_);
    // A screen too small for 25 rows (a large scale factor on a small
    // display) scrolls the whole window instead of cutting it.
    auto* area = new QScrollArea;
    area->setObjectName(QStringLiteral("SuperTaggingArea"));
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->setWidget(content);
    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->addWidget(area);
    connectControls();
    model_.progressed = [this] { showProgress(); };
    const QScreen* screen = parent ? parent->screen() : QGuiApplication::primaryScreen();
    const QSize wanted = content->sizeHint() + QSize(2, 2);
    resize(screen ? wanted.boundedTo(screen->availableGeometry().size() - QSize(16, 48)) : wanted);
}

QWidget* SuperTaggingWindow::buildRows()
{
    auto* area = new QWidget;
    auto* grid = new QGridLayout(area);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(4);
    grid->setVerticalSpacing(1);
    grid->addWidget(new QLabel(QStringLiteral("No.")), 0, 0);
    grid->addWidget(new QLabel(QStringLiteral("Artist")), 0, 1);
    grid->addWidget(new QLabel(QStringLiteral("Title")), 0, 2);
    for (int r = 0; r < SuperTagging::Visible_Rows; ++r) {
        Row& row = rows_[size_t(r)];
        row.number = new QLabel;
        row.number->setObjectName(QStringLiteral("LabelNumber"));
        row.number->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        row.number->setMinimumWidth(row.number->fontMetrics().horizontalAdvance(QStringLiteral("000")));
        row.va = box("TextVA");
        row.song = box("TextSong");
        row.va->setMinimumWidth(row.va->fontMetrics().averageCharWidth() * 20);
        row.song->setMinimumWidth(row.song->fontMetrics().averageCharWidth() * 30);
        for (QWidget* w : {static_cast<QWidget*>(row.number), static_cast<QWidget*>(row.va),
                           static_cast<QWidget*>(row.song)}) {
            w->setProperty(kRow, r);
            w->installEventFilter(this);
        }
        grid->addWidget(row.number, r + 1, 0);
        grid->addWidget(row.va, r + 1, 1);
        grid->addWidget(row.song, r + 1, 2);
    }
    grid->setColumnStretch(1, 2);
    grid->setColumnStretch(2, 3);
    scroll_ = new QScrollBar(Qt::Vertical);
    scroll_->setObjectName(QStringLiteral("VScroll1"));
    scroll_->setPageStep(SuperTagging::Visible_Rows);
    grid->addWidget(scroll_, 1, 3, SuperTagging::Visible_Rows, 1);
    // The bar's column keeps its width when the bar is hidden.
    grid->setColumnMinimumWidth(3, scroll_->sizeHint().width());
    return area;
}

QWidget* SuperTaggingWindow::buildAlbumSide()
{
    auto* side = new QWidget;
    side->setMaximumWidth(300);
    auto* column = new QVBoxLayout(side);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(6);

    auto* albumBox = new QGroupBox(QStringLiteral("Album"));
    auto* form = new QGridLayout(albumBox);
    artist_ = box("TextArtist");
    album_ = box("TextAlbum");
    year_ = box("TextYear");
    year_->setMaxLength(4);
    year_->setValidator(new QRegularExpressionValidator(QRegularExpression(QStringLiteral("\\d{0,4}")), year_));
    year_->setPlaceholderText(QStringLiteral("2010"));
    year_->setMaximumWidth(year_->fontMetrics().horizontalAdvance(QStringLiteral("00000")) + 16);
    genre_ = new QComboBox;
    genre_->setObjectName(QStringLiteral("Combo_Genre"));
    genre_->addItems(Genre_Names());
    genre_->setMaxVisibleItems(20);
    genreText_ = box("TextGenre");
    va_ = new QCheckBox(QStringLiteral("Various Artists"));
    va_->setObjectName(QStringLiteral("CheckVA"));
    form->addWidget(caption(QStringLiteral("&Artist"), artist_), 0, 0);
    form->addWidget(artist_, 0, 1, 1, 2);
    form->addWidget(caption(QStringLiteral("Al&bum"), album_), 1, 0);
    form->addWidget(album_, 1, 1, 1, 2);
    form->addWidget(caption(QStringLiteral("&Year"), year_), 2, 0);
    form->addWidget(year_, 2, 1);
    form->addWidget(va_, 2, 2);
    form->addWidget(caption(QStringLiteral("&Genre"), genre_), 3, 0);
    form->addWidget(genre_, 3, 1, 1, 2);
    form->addWidget(genreText_, 4, 1, 1, 2);
    form->setColumnStretch(2, 1);
    column->addWidget(albumBox);

    auto* coverBox = new QGroupBox(QStringLiteral("Cover"));
    auto* coverColumn = new QVBoxLayout(coverBox);
    cover_ = new QLabel;
    cover_->setObjectName(QStringLiteral("TagCover"));
    cover_->setFixedSize(kCoverSide, kCoverSide);
    cover_->setAlignment(Qt::AlignCenter);
    cover_->setFrameShape(QFrame::StyledPanel);
    coverCombo_ = new QComboBox;
    coverCombo_->setObjectName(QStringLiteral("ComboCover"));
    coverCombo_->setPlaceholderText(QStringLiteral("Choose a cover"));
    browse_ = button("CommandBrowseCover", QStringLiteral("Browse Cover"));
    coverColumn->addWidget(cover_, 0, Qt::AlignHCenter);
    coverColumn->addWidget(coverCombo_);
    coverColumn->addWidget(browse_);
    column->addWidget(coverBox);

    auto* tracksBox = new QGroupBox(QStringLiteral("Tracks"));
    auto* tracks = new QGridLayout(tracksBox);
    count_ = box("TextTrackCount");
    count_->setReadOnly(true);
    count_->setAlignment(Qt::AlignRight);
    count_->setMaximumWidth(count_->fontMetrics().horizontalAdvance(QStringLiteral("0000")) + 16);
    plus_ = button("CommandTrackPlus", QStringLiteral("+"));
    minus_ = button("CommandTrackMin", QStringLiteral("-"));
    plus_->setToolTip(QStringLiteral("Add an empty track at the end"));
    minus_->setToolTip(QStringLiteral("Take away the last empty track"));
    up_ = button("CommandUp", QStringLiteral("Move &Up"));
    down_ = button("CommandDown", QStringLiteral("Move &Down"));
    // The converting mode's buttons: they stay hidden and disabled until the
    // converter is part of the program.
    addTracks_ = button("cmdAddTracks", QStringLiteral("Add Tracks"));
    removeTrack_ = button("cmdRemoveTrack", QStringLiteral("Remove Track"));
    for (QPushButton* b : {addTracks_, removeTrack_}) {
        b->setEnabled(false);
        b->hide();
    }
    tracks->addWidget(new QLabel(QStringLiteral("Count")), 0, 0);
    tracks->addWidget(count_, 0, 1);
    tracks->addWidget(plus_, 0, 2);
    tracks->addWidget(minus_, 0, 3);
    tracks->addWidget(up_, 1, 0, 1, 2);
    tracks->addWidget(down_, 1, 2, 1, 2);
    tracks->addWidget(addTracks_, 2, 0, 1, 2);
    tracks->addWidget(removeTrack_, 2, 2, 1, 2);
    column->addWidget(tracksBox);

    column->addStretch(1);
    ok_ = button("CommandOK", QStringLiteral("OK"));
    cancel_ = button("CommandCancel", QStringLiteral("Cancel"));
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(ok_);
    buttons->addWidget(cancel_);
    column->addLayout(buttons);
    return side;
}

void SuperTaggingWindow::connectControls()
{
    connect(scroll_, &QScrollBar::valueChanged, this, [this](int value) {
        model_.setVScroll1(value);
        showRows();
    });
    for (int r = 0; r < SuperTagging::Visible_Rows; ++r) {
        connect(rows_[size_t(r)].va, &QLineEdit::textEdited, this,
                [this, r](const QString& text) { model_.setArtist(model_.Row_Track(r), text); });
        connect(rows_[size_t(r)].song, &QLineEdit::textEdited, this,
                [this, r](const QString& text) { model_.setTitle(model_.Row_Track(r), text); });
    }
    connect(artist_, &QLineEdit::textEdited, this, [this](const QString& t) { model_.TextArtist = t; });
    connect(album_, &QLineEdit::textEdited, this, [this](const QString& t) { model_.TextAlbum = t; });
    connect(year_, &QLineEdit::textEdited, this, [this](const QString& t) { model_.Type_Year(t); });
    connect(genreText_, &QLineEdit::textEdited, this, [this](const QString& t) { model_.TextGenre = t; });
    connect(genre_, &QComboBox::activated, this, [this](int entry) {
        model_.Combo_Genre_Click(entry);
        showModel();
        if (model_.TextGenre_Enabled)
            genreText_->setFocus();
    });
    connect(va_, &QCheckBox::toggled, this, [this](bool ticked) {
        model_.setCheckVA(ticked);
        showModel();
    });
    connect(coverCombo_, &QComboBox::activated, this, [this](int index) {
        model_.ComboCover_Click(index);
        showModel();
    });
    connect(browse_, &QPushButton::clicked, this, [this] {
        model_.CommandBrowseCover();
        showModel();
    });
    const std::pair<QPushButton*, void (SuperTagging::*)()> commands[] = {
        {plus_, &SuperTagging::CommandTrackPlus},
        {minus_, &SuperTagging::CommandTrackMin},
        {up_, &SuperTagging::CommandUp},
        {down_, &SuperTagging::CommandDown},
    };
    for (const auto& [b, command] : commands) {
        connect(b, &QPushButton::clicked, this, [this, command = command] {
            (model_.*command)();
            showModel();
        });
    }
    connect(ok_, &QPushButton::clicked, this, [this] { commandOK(); });
    connect(cancel_, &QPushButton::clicked, this, &QDialog::reject);
}

void SuperTaggingWindow::showModel()
{
    setWindowTitle(model_.caption());
    ok_->setEnabled(model_.CommandOK_Enabled());

    setText(artist_, model_.TextArtist);
    artist_->setEnabled(model_.TextArtist_Enabled());
    setText(album_, model_.TextAlbum);
    setText(year_, model_.TextYear);
    genre_->setCurrentIndex(model_.Combo_Genre);
    setText(genreText_, model_.TextGenre);
    genreText_->setEnabled(model_.TextGenre_Enabled);
    {
        const QSignalBlocker quiet(va_);
        va_->setChecked(model_.CheckVA);
    }
    coverCombo_->clear();
    coverCombo_->addItems(model_.ComboCover());
    coverCombo_->setCurrentIndex(model_.ComboCover_Index());
    showCover();

    setText(count_, model_.TextTrackCount());
    minus_->setEnabled(model_.CommandTrackMin_Enabled());
    up_->setEnabled(model_.CommandUp_Enabled());
    down_->setEnabled(model_.CommandDown_Enabled());
    {
        const QSignalBlocker quiet(scroll_);
        scroll_->setRange(0, model_.VScroll1_Max());
        scroll_->setValue(model_.VScroll1_Value());
    }
    scroll_->setVisible(model_.VScroll1_Visible());
    showRows();
}

void SuperTaggingWindow::showRows()
{
    const int marker = model_.Marker_Row();
    for (int r = 0; r < SuperTagging::Visible_Rows; ++r) {
        const Row& row = rows_[size_t(r)];
        const int track = model_.Row_Track(r);
        const bool shown = track >= 0;
        const AlbumTrack* t = shown ? &model_.tracks()[size_t(track)] : nullptr;
        row.number->setText(shown ? t->Track_Number : QString());
        // The marked entry's number in blue.
        row.number->setStyleSheet(r == marker ? QStringLiteral("color: rgb(0, 0, 255); font-weight: bold;")
                                              : QString());
        setText(row.va, shown ? t->Artist : QString());
        setText(row.song, shown ? t->Title : QString());
        row.va->setEnabled(shown && model_.TextVA_Enabled());
        row.song->setEnabled(shown);
    }
    up_->setEnabled(model_.CommandUp_Enabled());
    down_->setEnabled(model_.CommandDown_Enabled());
}

void SuperTaggingWindow::showCover()
{
    cover_->setPixmap(Fitted_Cover(model_.TagCover(), cover_));
}

void SuperTaggingWindow::showProgress()
{
    labelName_->setText(model_.LabelName);
    progress_->setVisible(model_.ProgressBar1_Visible);
    progress_->setRange(0, std::max(1, model_.ProgressBar1_Max));
    progress_->setValue(model_.ProgressBar1_Value);
    frame_->setEnabled(model_.Frame_Enabled);
}

void SuperTaggingWindow::mark(int row)
{
    const int track = model_.Row_Track(row);
    if (track < 0 || track == model_.Marked())
        return;
    model_.Mark(track);
    showRows();
}

// Enter and the arrow keys step to the box of the next or previous entry,
// scrolling when it is out of view.
void SuperTaggingWindow::rowStep(int row, int step, QLineEdit* from)
{
    const int track = model_.Row_Track(row) + step;
    if (track < 0 || track >= model_.Track_Count())
        return;
    model_.Mark(track);
    if (model_.Marker_Row() < 0)
        model_.setVScroll1(step > 0 ? track - SuperTagging::Visible_Rows + 1 : track);
    showModel();
    const Row& target = rows_[size_t(model_.Marker_Row())];
    QLineEdit* next = from->objectName() == QLatin1String("TextVA") ? target.va : target.song;
    (next->isEnabled() ? next : target.song)->setFocus();
}

bool SuperTaggingWindow::eventFilter(QObject* watched, QEvent* event)
{
    const QVariant r = watched->property(kRow);
    if (!r.isValid())
        return QDialog::eventFilter(watched, event);
    const int row = r.toInt();
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::MouseButtonPress) {
        mark(row);
    } else if (event->type() == QEvent::KeyPress) {
        auto* edit = qobject_cast<QLineEdit*>(watched);
        const int key = static_cast<QKeyEvent*>(event)->key();
        const int step = key == Qt::Key_Up ? -1 : key == Qt::Key_Down || key == Qt::Key_Return || key == Qt::Key_Enter ? 1 : 0;
        if (edit && step != 0) {
            rowStep(row, step, edit);
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

void SuperTaggingWindow::wheelEvent(QWheelEvent* event)
{
    if (scroll_->isVisible())
        scroll_->setValue(scroll_->value() - event->angleDelta().y() / 40);
    event->accept();
}

void SuperTaggingWindow::commandOK()
{
    if (writing_ || !model_.CommandOK_Enabled())
        return;
    writing_ = true;
    const auto write = [this] { model_.Write_Album(); };
    if (runner_)
        runner_(write);
    else
        write();
    writing_ = false;
    accept();
}

void SuperTaggingWindow::reject()
{
    // There is no stop button: a write runs to its end.
    if (!writing_)
        QDialog::reject();
}

void Bind_Album_Tagger(TagPanelsView& panels, QWidget* window)
{
    const auto open = [&panels, window](std::vector<int> (*rowsOf)(TagEditContext&)) {
        PanelContext& p = panels.context();
        TagEditContext& edit = p.edit;
        const std::vector<int> rows = rowsOf(edit);
        if (rows.empty())
            return;
        SuperTaggingWindow dialog(edit, window);
        dialog.model().Open_Album(rows);
        dialog.setWriteRunner([&edit](const std::function<void()>& write) {
            LibraryContext lc = edit.library();
            With_Library_Lock(lc, write);
        });
        dialog.showModel();
        if (dialog.exec() != QDialog::Accepted)
            return;
        const QString shown = p.panels.Tag_Shown_Path;
        for (const AlbumTrack& t : dialog.model().tracks()) {
            if (t.Real && Album_Track_File(t) == shown) {
                Load_Panels(p, shown, Library_Row_Of(edit.lib.MP3_List, shown));
                break;
            }
        }
    };
    QObject::connect(panels.albumTagButton(), &QPushButton::clicked, window, [open] { open(&Album_Tag_Rows); });
    QObject::connect(panels.superTagButton(), &QPushButton::clicked, window, [open] { open(&Super_Tag_Rows); });
}

}  // namespace sonorit::ui
