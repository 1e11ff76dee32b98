#include "tag_panels_view.h"

#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <QTreeView>

#include "player_panel.h"
#include "tagedit/panel_writes.h"

namespace sonorit::ui {

TagPanelsView::TagPanelsView(TagEditContext& edit, const TagPanelWidgets& widgets, QTreeView* library,
                             QTreeView* playList)
    : QObject(),
      context_{edit, panels_, {}, {}},
      w_(widgets),
      library_(library),
      playList_(playList)
{
    context_.shown = [this] { show(); };
    context_.focus = [this](PanelFocus where) { moveFocus(where); };
    boxes_ = {
        {w_.tag1Artist, PanelBox::Tag1_Text_Artist}, {w_.tag1Album, PanelBox::Tag1_Text_Album},
        {w_.tag1Track, PanelBox::Tag1_Text_Track},   {w_.tag1Year, PanelBox::Tag1_Text_Year},
        {w_.tag1Title, PanelBox::Tag1_Text_Title},   {w_.tag1Comment, PanelBox::Tag1_Text_Comment},
        {w_.tag2Artist, PanelBox::Tag2_Text_Artist}, {w_.tag2Album, PanelBox::Tag2_Text_Album},
        {w_.tag2Track, PanelBox::Tag2_Text_Track},   {w_.tag2Year, PanelBox::Tag2_Text_Year},
        {w_.tag2Title, PanelBox::Tag2_Text_Title},   {w_.tag2Comment, PanelBox::Tag2_Text_Comment},
        {w_.tag2GenreText, PanelBox::Tag2_Text_Genre},
    };
    connectBoxes();
    connectButtons();
    connectLists();
    // Tab walks the controls in the order Enter does.
    const QList<QWidget*> order = {w_.tag1Artist, w_.tag1Album, w_.tag1Track, w_.tag1Year, w_.tag1Title,
                                   w_.tag1Genre,  w_.tag1Comment, w_.writeTag1, w_.copyTagv2, w_.tag2Artist,
                                   w_.tag2Album,  w_.tag2Track, w_.tag2Year, w_.tag2VA, w_.tag2Title,
                                   w_.tag2GenreText, w_.tag2Genre, w_.tag2Comment, w_.writeTag2, w_.copyTagv1,
                                   w_.coverButton, w_.albumTag, w_.superTag};
    for (qsizetype i = 1; i < order.size(); ++i)
        QWidget::setTabOrder(order[i - 1], order[i]);
    setLibraryOpen(false);
    show();
}

void TagPanelsView::setLibraryOpen(bool open)
{
    w_.writeTag1->setEnabled(open);
    w_.writeTag2->setEnabled(open);
}

void TagPanelsView::connectBoxes()
{
    for (const auto& [edit, box] : boxes_) {
        edit->installEventFilter(this);
        QObject::connect(edit, &QLineEdit::textEdited, this,
                         [this, edit = edit, box = box](const QString& text) { edited(edit, box, text); });
    }
    for (QComboBox* combo : {w_.tag1Genre, w_.tag2Genre, w_.tag2VA})
        combo->installEventFilter(this);
    QObject::connect(w_.tag1Genre, &QComboBox::activated, this, [this](int i) { panels_.Tag1_Combo_Genre = i; });
    QObject::connect(w_.tag2VA, &QComboBox::activated, this, [this](int i) { panels_.Tag2_Combo_VA = i; });
    QObject::connect(w_.tag2Genre, &QComboBox::activated, this,
                     [this](int i) { Tag2_Combo_Genre_Click(context_, i); });
}

void TagPanelsView::connectButtons()
{
    QObject::connect(w_.writeTag1, &QPushButton::clicked, this, [this] { Command_Write_Tag1(context_); });
    QObject::connect(w_.writeTag2, &QPushButton::clicked, this, [this] { Command_Write_Tag2(context_); });
    QObject::connect(w_.copyTagv2, &QPushButton::clicked, this, [this] {
        CommandCopyTagv2(panels_);
        show();
    });
    QObject::connect(w_.copyTagv1, &QPushButton::clicked, this, [this] {
        CommandCopyTagv1(panels_);
        show();
    });
    QObject::connect(w_.coverButton, &QPushButton::clicked, this, [this] { CommandCover(context_); });
}

void TagPanelsView::connectLists()
{
    QObject::connect(library_, &QTreeView::clicked, this,
                     [this](const QModelIndex& index) { Select_Library_Row(context_, index.row()); });
    QObject::connect(playList_, &QTreeView::clicked, this,
                     [this](const QModelIndex& index) { Select_Playlist_Entry(context_, index.row() + 1); });
    // A key press on either list shows the row it leaves current, as a click
    // does; a row the program moves to is no pick.
    library_->installEventFilter(this);
    playList_->installEventFilter(this);
}

void TagPanelsView::keyPressedIn(QTreeView* list)
{
    const QModelIndex current = list->currentIndex();
    if (!current.isValid())
        return;
    if (list == library_)
        Select_Library_Row(context_, current.row());
    else
        Select_Playlist_Entry(context_, current.row() + 1);
}

void TagPanelsView::edited(QLineEdit* edit, PanelBox box, const QString& text)
{
    // Keys are filtered before they arrive; a paste is filtered here.
    const QString before = panels_.box(box);
    QString kept = text;
    if (text.size() > before.size() && Filter_Typed(box, text) != text)
        kept = Filter_Typed(box, text);
    panels_.box(box) = kept;
    if (kept != text)
        edit->setText(kept);
}

bool TagPanelsView::boxOf(QObject* widget, PanelBox& box) const
{
    for (const auto& [edit, b] : boxes_) {
        if (edit == widget) {
            box = b;
            return true;
        }
    }
    return false;
}

QWidget* TagPanelsView::nextAfter(QObject* from) const
{
    const std::vector<std::pair<QObject*, QWidget*>> steps = {
        {w_.tag1Artist, w_.tag1Album},
        {w_.tag1Album, w_.tag1Track},
        {w_.tag1Track, w_.tag1Year},
        {w_.tag1Year, w_.tag1Title},
        {w_.tag1Title, w_.tag1Genre},
        {w_.tag1Genre, w_.tag1Comment},
        {w_.tag1Comment, w_.writeTag1},
        {w_.tag2Artist, w_.tag2Album},
        // Kept as users of the program know it: Album goes on to the other
        // panel's Track.
        {w_.tag2Album, w_.tag1Track},
        {w_.tag2Track, w_.tag2Year},
        {w_.tag2Year, w_.tag2VA},
        {w_.tag2VA, w_.tag2Title},
        {w_.tag2Title, w_.tag2GenreText->isEnabled() ? static_cast<QWidget*>(w_.tag2GenreText) : w_.tag2Genre},
        {w_.tag2GenreText, w_.tag2Genre},
        {w_.tag2Genre, w_.tag2Comment},
        {w_.tag2Comment, w_.writeTag2},
    };
    for (const auto& [widget, next] : steps) {
        if (widget == from)
            return next;
    }
    return nullptr;
}

bool TagPanelsView::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == library_ || watched == playList_) {
        // The list handles the key after this; its tag shows once it has.
        if (event->type() == QEvent::KeyPress) {
            auto* list = static_cast<QTreeView*>(watched);
            QTimer::singleShot(0, this, [this, list] { keyPressedIn(list); });
        }
        return false;
    }
    if (event->type() == QEvent::FocusIn) {
        if (auto* edit = qobject_cast<QLineEdit*>(watched))
            QTimer::singleShot(0, edit, [edit] { edit->selectAll(); });  // after the click placed the cursor
        return false;
    }
    if (event->type() != QEvent::KeyPress)
        return false;
    auto* key = static_cast<QKeyEvent*>(event);
    if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
        auto* combo = qobject_cast<QComboBox*>(watched);
        if (combo && combo->view()->isVisible())
            return false;  // Enter picks in the open list
        if (QWidget* next = nextAfter(watched)) {
            next->setFocus(Qt::TabFocusReason);
            return true;
        }
        return false;
    }
    PanelBox box;
    auto* edit = qobject_cast<QLineEdit*>(watched);
    const QString text = key->text();
    if (!edit || !boxOf(watched, box) || text.isEmpty() || !text.at(0).isPrint()
        || (key->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)))
        return false;  // control keys pass
    if (Filter_Typed(box, text) != text)
        return true;  // a printable key other than a digit
    const int limit = Panel_Box_Limit(box);
    return limit > 0 && edit->text().size() - edit->selectedText().size() + text.size() > limit;
}

void TagPanelsView::moveFocus(PanelFocus where)
{
    switch (where) {
    case PanelFocus::Library_List: library_->setFocus(); break;
    case PanelFocus::Play_List: playList_->setFocus(); break;
    case PanelFocus::Tag2_Text_Genre: w_.tag2GenreText->setFocus(); break;
    case PanelFocus::None: break;
    }
}

void TagPanelsView::show()
{
    for (const auto& [edit, box] : boxes_) {
        if (edit->text() != panels_.box(box))
            edit->setText(panels_.box(box));
        edit->setCursorPosition(0);
    }
    w_.tag2GenreText->setEnabled(panels_.Tag2_Text_Genre_Enabled);
    w_.tag2Time->setText(panels_.Tag2_Text_Time);
    w_.tag1Genre->setCurrentIndex(panels_.Tag1_Combo_Genre);
    w_.tag2Genre->setCurrentIndex(panels_.Tag2_Combo_Genre);
    w_.tag2VA->setCurrentIndex(panels_.Tag2_Combo_VA);
    const MpegLabels& m = panels_.Mpeg;
    const QString texts[] = {m.labSize,  m.labLength,   m.LabFramesCount, m.labBitRate, m.LabFrameSize,
                             m.labLayer, m.labFreqChan, m.labChannels,    m.LabTagSize};
    for (size_t i = 0; i < w_.mpeg.size(); ++i)
        w_.mpeg[i]->setText(texts[i]);
    showCover();
}

void TagPanelsView::showCover()
{
    w_.cover->setPixmap(Fitted_Cover(panels_.Cover_Tag, w_.cover));
}

}  // namespace sonorit::ui
