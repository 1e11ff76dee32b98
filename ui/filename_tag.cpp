#include "filename_tag.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpressionValidator>
#include <QVBoxLayout>

#include "menu_bar.h"
#include "player_panel.h"

namespace sonorit::ui {

namespace {
constexpr int kCoverSize = 120;

QLabel* caption(const QString& text, QWidget* buddy)
{
    auto* label = new QLabel(text);
    label->setBuddy(buddy);
    return label;
}

QLineEdit* digitBox(const char* name, int limit)
{
    auto* box = new QLineEdit;
    box->setObjectName(QLatin1String(name));
    box->setMaxLength(limit);
    // Other printable keys are dropped; control keys pass.
    box->setValidator(new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9]*")), box));
    box->setMaximumWidth(box->fontMetrics().horizontalAdvance(QString(limit + 3, QLatin1Char('0'))) + 12);
    return box;
}

void setComboText(QComboBox* combo, const QStringList& entries, const QString& text)
{
    const QSignalBlocker block(combo);
    combo->clear();
    combo->addItems(entries);
    combo->setCurrentIndex(-1);
    combo->setEditText(text);
}
}  // namespace

const QString& FilenameTag::Empty_Text()
{
    static const QString text = QStringLiteral(
        "DoubleClick this textbox to select a folder, or select a track from the \r\nlibrary list...\r\n");
    return text;
}

FilenameTag::FilenameTag(TagEditContext& c, QWidget* parent) : QWidget(parent, Qt::Window), c_(c), tagger_(c)
{
    setObjectName(QStringLiteral("FilenameTag"));
    setWindowTitle(QStringLiteral("Filename Tagging"));
    build();
    // Room for a long name's runs; smaller screens get what they have.
    resize(sizeHint().expandedTo(QSize(680, 0)));
    tagger_.loaded = [this] { push(); };
}

void FilenameTag::build()
{
    auto* outer = new QVBoxLayout(this);

    filenameText_ = new QPlainTextEdit;
    filenameText_->setObjectName(QStringLiteral("FilenameText"));
    filenameText_->setReadOnly(true);
    filenameText_->setPlainText(QString(Empty_Text()).replace(QLatin1String("\r\n"), QLatin1String("\n")));
    filenameText_->setFixedHeight(filenameText_->fontMetrics().lineSpacing() * 3 + 12);
    filenameText_->viewport()->installEventFilter(this);
    outer->addWidget(filenameText_);

    auto* tagBox = new QGroupBox(QStringLiteral("ID3 v2.3 Tag"));
    auto* grid = new QGridLayout(tagBox);
    const char* names[] = {"FT_Tag2_Combo_Artist", "FT_Tag2_Combo_Album", "FT_Tag2_Combo_Title"};
    const char* captions[] = {"&Artist", "Al&bum", "&Title"};
    for (int i = 0; i < 3; ++i) {
        runs_[size_t(i)] = new QComboBox;
        runs_[size_t(i)]->setObjectName(QLatin1String(names[i]));
        runs_[size_t(i)]->setEditable(true);
        runs_[size_t(i)]->setInsertPolicy(QComboBox::NoInsert);
        runs_[size_t(i)]->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        runs_[size_t(i)]->setMinimumContentsLength(24);
        grid->addWidget(caption(QLatin1String(captions[i]), runs_[size_t(i)]), i, 0);
        grid->addWidget(runs_[size_t(i)], i, 1, 1, 4);
    }
    track_ = digitBox("FT_Tag2_Text_Track", 2);
    year_ = digitBox("FT_Tag2_Text_Year", 4);
    va_ = new QCheckBox(QStringLiteral("Various Artists"));
    va_->setObjectName(QStringLiteral("FT_Tag2_VA"));
    auto* numbers = new QHBoxLayout;
    numbers->addWidget(track_);
    numbers->addSpacing(12);
    numbers->addWidget(caption(QStringLiteral("&Year"), year_));
    numbers->addWidget(year_);
    numbers->addSpacing(12);
    numbers->addWidget(va_);
    numbers->addStretch();
    grid->addWidget(caption(QStringLiteral("T&rack"), track_), 3, 0);
    grid->addLayout(numbers, 3, 1, 1, 4);

    genre_ = new QComboBox;
    genre_->setObjectName(QStringLiteral("FT_Tag2_Combo_Genre"));
    genre_->addItems(Filename_Genre_Names());
    genre_->setMaxVisibleItems(20);
    genreText_ = new QLineEdit;
    genreText_->setObjectName(QStringLiteral("FT_Tag2_Text_Genre"));
    grid->addWidget(caption(QStringLiteral("&Genre"), genre_), 4, 0);
    grid->addWidget(genre_, 4, 1, 1, 2);
    grid->addWidget(genreText_, 4, 3, 1, 2);
    comment_ = new QLineEdit;
    comment_->setObjectName(QStringLiteral("FT_Tag2_Text_Comment"));
    grid->addWidget(caption(QStringLiteral("&Comment"), comment_), 5, 0);
    grid->addWidget(comment_, 5, 1, 1, 4);
    grid->setColumnStretch(1, 1);
    grid->setColumnStretch(3, 1);

    auto* coverColumn = new QVBoxLayout;
    cover_ = new ClickLabel;
    cover_->setObjectName(QStringLiteral("FT_Cover_Tag"));
    cover_->setFixedSize(kCoverSize, kCoverSize);
    cover_->setFrameShape(QFrame::StyledPanel);
    cover_->setAlignment(Qt::AlignCenter);
    cover_->setToolTip(QStringLiteral("Click: no cover, the cover of the tag, the chosen picture"));
    coverButton_ = new QPushButton(QStringLiteral("Browse Cover Art..."));
    coverButton_->setObjectName(QStringLiteral("FT_CommandCover"));
    coverColumn->addWidget(cover_, 0, Qt::AlignHCenter);
    coverColumn->addWidget(coverButton_);
    coverColumn->addStretch();
    auto* middle = new QHBoxLayout;
    middle->addWidget(tagBox, 1);
    middle->addLayout(coverColumn);
    outer->addLayout(middle);

    auto* optionBox = new QGroupBox(QStringLiteral("Write"));
    auto* optionRow = new QHBoxLayout(optionBox);
    option_ = new QButtonGroup(this);
    option_->setObjectName(QStringLiteral("FT_Option1"));
    const char* options[] = {"Tag v1.1 only", "Tag v2.3 only", "Tag v1.1 + v2.3"};
    for (int i = 0; i < 3; ++i) {
        auto* button = new QRadioButton(QLatin1String(options[i]));
        button->setObjectName(QStringLiteral("FT_Option1_%1").arg(i));
        option_->addButton(button, i);
        optionRow->addWidget(button);
    }
    optionRow->addStretch();
    outer->addWidget(optionBox);

    autoselect_ = new QCheckBox(QStringLiteral("Auto-select next track in library/folder after writing current tag(s)"));
    autoselect_->setObjectName(QStringLiteral("FT_Check_Autoselect"));
    outer->addWidget(autoselect_);

    auto* updateBox = new QFrame;
    updateBox->setObjectName(QStringLiteral("TagUpdateBox"));
    updateBox->setFrameShape(QFrame::StyledPanel);
    auto* updateRow = new QHBoxLayout(updateBox);
    updateRow->setContentsMargins(6, 2, 6, 2);
    progress_ = new QLabel;
    updateRow->addWidget(progress_);
    outer->addWidget(updateBox);

    auto* buttons = new QHBoxLayout;
    auto* previous = new QPushButton(QStringLiteral("Previous track"));
    previous->setObjectName(QStringLiteral("FT_Command_Previous"));
    auto* next = new QPushButton(QStringLiteral("Next track"));
    next->setObjectName(QStringLiteral("FT_Command_Next"));
    auto* writeButton = new QPushButton(QStringLiteral("Write"));
    writeButton->setObjectName(QStringLiteral("FT_Command_Write_Tag"));
    writeButton->setDefault(true);
    auto* close = new QPushButton(QStringLiteral("Close"));
    close->setObjectName(QStringLiteral("Command2"));
    buttons->addWidget(previous);
    buttons->addWidget(next);
    buttons->addStretch();
    buttons->addWidget(writeButton);
    buttons->addWidget(close);
    outer->addLayout(buttons);

    const QList<QWidget*> order{runs_[0], runs_[1], runs_[2], track_, year_, va_, genre_, genreText_, comment_,
                                writeButton};
    for (qsizetype i = 1; i < order.size(); ++i)
        setTabOrder(order[i - 1], order[i]);

    connect(genre_, &QComboBox::activated, this, [this](int index) {
        pull();
        tagger_.Genre_Click(index);
        push();
        applyFocus();
    });
    connect(cover_, &ClickLabel::clicked, this, [this] {
        tagger_.Cover_Click();
        showCover();
    });
    connect(coverButton_, &QPushButton::clicked, this, [this] {
        if (tagger_.FT_CommandCover())
            showCover();
    });
    connect(previous, &QPushButton::clicked, this, [this] { step(-1); });
    connect(next, &QPushButton::clicked, this, [this] { step(1); });
    connect(writeButton, &QPushButton::clicked, this, [this] { write(); });
    connect(close, &QPushButton::clicked, this, &QWidget::close);
    push();
}

void FilenameTag::pull()
{
    FilenameTagForm& f = tagger_.form;
    f.FT_Tag2_Combo_Artist = runs_[0]->currentText();
    f.FT_Tag2_Combo_Album = runs_[1]->currentText();
    f.FT_Tag2_Combo_Title = runs_[2]->currentText();
    f.FT_Tag2_Text_Track = track_->text();
    f.FT_Tag2_Text_Year = year_->text();
    f.FT_Tag2_VA = va_->isChecked();
    f.FT_Tag2_Combo_Genre = genre_->currentIndex();
    f.FT_Tag2_Text_Genre = genreText_->text();
    f.FT_Tag2_Text_Comment = comment_->text();
    f.FT_Option1 = static_cast<FtOption>(option_->checkedId());
    f.FT_Check_Autoselect = autoselect_->isChecked();
}

void FilenameTag::push()
{
    const FilenameTagForm& f = tagger_.form;
    if (!tagger_.File_Name.isEmpty())
        filenameText_->setPlainText(f.FilenameText);
    setComboText(runs_[0], f.Word_Runs, f.FT_Tag2_Combo_Artist);
    setComboText(runs_[1], f.Word_Runs, f.FT_Tag2_Combo_Album);
    setComboText(runs_[2], f.Word_Runs, f.FT_Tag2_Combo_Title);
    track_->setText(f.FT_Tag2_Text_Track);
    year_->setText(f.FT_Tag2_Text_Year);
    va_->setChecked(f.FT_Tag2_VA);
    {
        const QSignalBlocker block(genre_);
        genre_->setCurrentIndex(f.FT_Tag2_Combo_Genre);
    }
    genreText_->setText(f.FT_Tag2_Text_Genre);
    genreText_->setEnabled(f.FT_Tag2_Text_Genre_Enabled);
    comment_->setText(f.FT_Tag2_Text_Comment);
    comment_->setCursorPosition(0);
    option_->button(int(f.FT_Option1))->setChecked(true);
    autoselect_->setChecked(f.FT_Check_Autoselect);
    showCover();
}

void FilenameTag::showCover()
{
    cover_->setPixmap(Fitted_Cover(tagger_.Load_FT_Cover(), cover_));
}

void FilenameTag::applyFocus()
{
    switch (tagger_.focus) {
    case FtFocus::Artist:
        runs_[0]->setFocus();
        break;
    case FtFocus::GenreText:
        genreText_->setFocus();
        break;
    case FtFocus::Comment:
        comment_->setFocus();
        break;
    case FtFocus::None:
        break;
    }
    tagger_.focus = FtFocus::None;
}

void FilenameTag::write()
{
    pull();
    progress_->setText(QStringLiteral("Writing the tag of ") + tagger_.File_Name + QStringLiteral("..."));
    progress_->repaint();
    tagger_.Write_Tag();
    progress_->clear();
    push();
    applyFocus();
}

void FilenameTag::step(int by)
{
    pull();
    tagger_.Step(by);
    push();
}

void FilenameTag::open()
{
    c_.filenameTaggerFollow = [this](const QString& path, int row) {
        pull();
        tagger_.Follow_Selection(path, row);
        raise();
        activateWindow();
    };
    const int row = c_.lib.MP3_List.selected();
    if (!isVisible() && row >= 0) {
        pull();
        tagger_.Load_Library_Row(row);
    }
    show();
    raise();
    activateWindow();
}

void FilenameTag::closeEvent(QCloseEvent* event)
{
    c_.filenameTaggerFollow = nullptr;
    QWidget::closeEvent(event);
}

bool FilenameTag::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == filenameText_->viewport() && event->type() == QEvent::MouseButtonDblClick) {
        pull();
        tagger_.Choose_Folder();
        push();
        applyFocus();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void Bind_Filename_Tagger(MenuBar& menus, TagEditContext& c, QWidget* mainWindow)
{
    menus.bind(QStringLiteral("mnu_Extra_Filename_Tag"), [&c, mainWindow] {
        auto* window = mainWindow->findChild<FilenameTag*>(QStringLiteral("FilenameTag"));
        if (!window)
            window = new FilenameTag(c, mainWindow);
        window->open();
    });
}

}  // namespace sonorit::ui
