#include "tag_panels_build.h"

#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "player_panel.h"
#include "tags/id3v1.h"

namespace sonorit::ui {

namespace {

QLineEdit* box(const char* name)
{
    auto* edit = new QLineEdit;
    edit->setObjectName(QLatin1String(name));
    return edit;
}

// A box for two or four digits: wide enough for them, no wider.
QLineEdit* digitBox(const char* name, int digits)
{
    QLineEdit* edit = box(name);
    const QFontMetrics fm(edit->font());
    edit->setFixedWidth(fm.horizontalAdvance(QString(digits + 2, QLatin1Char('0'))) + 12);
    return edit;
}

// The closed combo shows what its room allows; the list shows whole names.
QComboBox* genreCombo(const char* name, int shownCharacters)
{
    auto* combo = new QComboBox;
    combo->setObjectName(QLatin1String(name));
    combo->addItems(Genre_Names());
    combo->setMaxVisibleItems(20);
    combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    combo->setMinimumContentsLength(shownCharacters);
    return combo;
}

QPushButton* button(const char* name, const QString& caption, const QString& tip = QString())
{
    auto* b = new QPushButton(caption);
    b->setObjectName(QLatin1String(name));
    b->setToolTip(tip);
    b->setAutoDefault(true);  // Enter presses the button that has the focus
    return b;
}

QLabel* caption(const QString& text, QWidget* buddy)
{
    auto* l = new QLabel(text);
    l->setBuddy(buddy);
    return l;
}

// Track and year share a row; what else stands there follows them.
QHBoxLayout* trackYearRow(QLineEdit* track, QLineEdit* year)
{
    auto* row = new QHBoxLayout;
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(track);
    row->addSpacing(8);
    row->addWidget(caption(QStringLiteral("Year"), year));
    row->addSpacing(4);
    row->addWidget(year);
    return row;
}

void buildTag1(TagPanelWidgets& w, QGroupBox* frame)
{
    frame->setTitle(QStringLiteral("ID3 Tag v1.1"));
    w.tag1Artist = box("Tag1_Text_Artist");
    w.tag1Album = box("Tag1_Text_Album");
    w.tag1Track = digitBox("Tag1_Text_Track", 2);
    w.tag1Year = digitBox("Tag1_Text_Year", 4);
    w.tag1Title = box("Tag1_Text_Title");
    w.tag1Comment = box("Tag1_Text_Comment");
    w.tag1Genre = genreCombo("Tag1_Combo_Genre", 6);
    w.writeTag1 = button("Command_Write_Tag1", QStringLiteral("Write v1.1"), QStringLiteral("Write the ID3v1.1 tag"));
    w.copyTagv2 = button("CommandCopyTagv2", QStringLiteral("Copy from v2.3"),
                         QStringLiteral("Fill this panel from the ID3v2.3 panel"));

    auto* grid = new QGridLayout(frame);
    grid->setVerticalSpacing(3);
    int r = 0;
    grid->addWidget(caption(QStringLiteral("Artist"), w.tag1Artist), r, 0);
    grid->addWidget(w.tag1Artist, r++, 1);
    grid->addWidget(caption(QStringLiteral("Album"), w.tag1Album), r, 0);
    grid->addWidget(w.tag1Album, r++, 1);
    grid->addWidget(caption(QStringLiteral("Title"), w.tag1Title), r, 0);
    grid->addWidget(w.tag1Title, r++, 1);
    grid->addWidget(caption(QStringLiteral("Track"), w.tag1Track), r, 0);
    QHBoxLayout* numbers = trackYearRow(w.tag1Track, w.tag1Year);
    numbers->addSpacing(8);
    numbers->addWidget(caption(QStringLiteral("Genre"), w.tag1Genre));
    numbers->addSpacing(4);
    numbers->addWidget(w.tag1Genre, 1);
    grid->addLayout(numbers, r++, 1);
    grid->addWidget(caption(QStringLiteral("Comment"), w.tag1Comment), r, 0);
    grid->addWidget(w.tag1Comment, r++, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(w.copyTagv2);
    buttons->addStretch(1);
    buttons->addWidget(w.writeTag1);
    grid->addLayout(buttons, r++, 0, 1, 2);
    grid->setColumnStretch(1, 1);
}

void buildTag2(TagPanelWidgets& w, QGroupBox* frame)
{
    frame->setTitle(QStringLiteral("ID3 Tag v2.3"));
    w.tag2Artist = box("Tag2_Text_Artist");
    w.tag2Album = box("Tag2_Text_Album");
    w.tag2Track = digitBox("Tag2_Text_Track", 2);
    w.tag2Year = digitBox("Tag2_Text_Year", 4);
    w.tag2Title = box("Tag2_Text_Title");
    w.tag2Comment = box("Tag2_Text_Comment");
    w.tag2GenreText = box("Tag2_Text_Genre");
    w.tag2GenreText->setEnabled(false);
    w.tag2Time = box("Tag2_Text_Time");
    w.tag2Time->setReadOnly(true);
    w.tag2Time->setFocusPolicy(Qt::NoFocus);
    w.tag2Time->setFixedWidth(QFontMetrics(w.tag2Time->font()).horizontalAdvance(QStringLiteral("000:00")) + 14);
    w.tag2Genre = genreCombo("Tag2_Combo_Genre", 8);
    w.tag2VA = new QComboBox;
    w.tag2VA->setObjectName(QStringLiteral("Tag2_Combo_VA"));
    w.tag2VA->addItems({QStringLiteral("No"), QStringLiteral("Yes")});
    w.tag2VA->setToolTip(QStringLiteral("Various Artists"));

    w.cover = new ClickLabel;
    w.cover->setObjectName(QStringLiteral("Cover_Tag"));
    w.cover->setFixedSize(kTagCoverSize, kTagCoverSize);
    w.cover->setFrameShape(QFrame::StyledPanel);
    w.cover->setAlignment(Qt::AlignCenter);
    w.coverButton = button("CommandCover", QStringLiteral("Cover..."), QStringLiteral("Choose a JPEG picture as the new cover"));
    w.albumTag = button("CommandAlbumTag", QStringLiteral("Album..."), QStringLiteral("Tag the album of this track"));
    w.superTag = button("CommandSuperTag", QStringLiteral("Selection..."),
                        QStringLiteral("Tag the selected tracks as one album"));
    w.writeTag2 = button("Command_Write_Tag2", QStringLiteral("Write v2.3"), QStringLiteral("Write the ID3v2.3 tag"));
    w.copyTagv1 = button("CommandCopyTagv1", QStringLiteral("Copy from v1.1"),
                         QStringLiteral("Fill this panel from the ID3v1.1 panel"));

    auto* grid = new QGridLayout(frame);
    grid->setVerticalSpacing(3);
    int r = 0;
    grid->addWidget(caption(QStringLiteral("Artist"), w.tag2Artist), r, 0);
    grid->addWidget(w.tag2Artist, r++, 1, 1, 2);
    grid->addWidget(caption(QStringLiteral("Album"), w.tag2Album), r, 0);
    grid->addWidget(w.tag2Album, r++, 1, 1, 2);
    grid->addWidget(caption(QStringLiteral("Track"), w.tag2Track), r, 0);
    QHBoxLayout* numbers = trackYearRow(w.tag2Track, w.tag2Year);
    numbers->addStretch(1);
    numbers->addWidget(caption(QStringLiteral("VA"), w.tag2VA));
    numbers->addSpacing(4);
    numbers->addWidget(w.tag2VA);
    grid->addLayout(numbers, r++, 1, 1, 2);
    grid->addWidget(caption(QStringLiteral("Title"), w.tag2Title), r, 0);
    grid->addWidget(w.tag2Title, r++, 1, 1, 2);
    grid->addWidget(caption(QStringLiteral("Genre"), w.tag2Genre), r, 0);
    grid->addWidget(w.tag2Genre, r, 1);
    grid->addWidget(w.tag2GenreText, r++, 2);
    grid->addWidget(caption(QStringLiteral("Comment"), w.tag2Comment), r, 0);
    grid->addWidget(w.tag2Comment, r++, 1, 1, 2);

    // The cover with what belongs to it beside: the time, the picture's
    // button, the album tagger's two openers, the copy and the write.
    auto* lower = new QHBoxLayout;
    lower->addWidget(w.cover, 0, Qt::AlignTop);
    auto* side = new QGridLayout;
    side->setVerticalSpacing(3);
    auto* time = new QHBoxLayout;
    time->addWidget(caption(QStringLiteral("Time"), w.tag2Time));
    time->addSpacing(4);
    time->addWidget(w.tag2Time);
    time->addStretch(1);
    side->addLayout(time, 0, 0);
    side->addWidget(w.coverButton, 0, 1);
    side->addWidget(w.albumTag, 1, 0);
    side->addWidget(w.superTag, 1, 1);
    side->setRowStretch(2, 1);
    side->addWidget(w.copyTagv1, 3, 0);
    side->addWidget(w.writeTag2, 3, 1);
    lower->addLayout(side, 1);
    grid->addLayout(lower, r++, 0, 1, 3);
    grid->setColumnStretch(1, 3);
    grid->setColumnStretch(2, 2);
}

void buildMpeg(TagPanelWidgets& w, QGroupBox* frame)
{
    frame->setTitle(QStringLiteral("MPEG Info"));
    static constexpr const char* names[] = {"labSize",    "labLength", "LabFramesCount", "labBitRate", "LabFrameSize",
                                            "labLayer",   "labFreqChan", "labChannels",  "LabTagSize"};
    // Two columns: the file and its length, then the frame format.
    auto* grid = new QGridLayout(frame);
    grid->setVerticalSpacing(1);
    for (size_t i = 0; i < w.mpeg.size(); ++i) {
        auto* l = new QLabel;
        l->setObjectName(QLatin1String(names[i]));
        l->setTextInteractionFlags(Qt::TextSelectableByMouse);
        // A long text is cut rather than widening the tag column.
        l->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
        w.mpeg[i] = l;
        grid->addWidget(l, int(i % 5), int(i / 5));
    }
    grid->setColumnStretch(0, 1);
    grid->setColumnStretch(1, 1);
}

}  // namespace

TagPanelWidgets Build_Tag_Panels(QGroupBox* tag1, QGroupBox* tag2, QGroupBox* mpeg)
{
    TagPanelWidgets w;
    buildTag1(w, tag1);
    buildTag2(w, tag2);
    buildMpeg(w, mpeg);
    return w;
}

}  // namespace sonorit::ui
