#include "base_layout.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QScrollArea>
#include <QTreeView>
#include <QVBoxLayout>

#include "progress_panel.h"

namespace sonorit::ui {

namespace {

// Room for the lower panels, which keep their height while the list takes
// whatever the window gives beyond it.
constexpr int kLowerPanelHeight = 230;
// The tag column takes a quarter of the width between these bounds: room for
// a title of some length, and no more than a few words ever need.
constexpr int kTagColumnMinWidth = 385;
constexpr int kTagColumnMaxWidth = 480;

QGroupBox* frame(const char* name, const QString& caption = QString())
{
    auto* box = new QGroupBox(caption);
    box->setObjectName(QLatin1String(name));
    return box;
}

QTreeView* makeTrackView(QAbstractItemModel* model)
{
    auto* view = new QTreeView;
    view->setObjectName(QStringLiteral("MP3_List"));
    view->setModel(model);
    view->setRootIsDecorated(false);
    view->setItemsExpandable(false);
    view->setUniformRowHeights(true);  // keeps tens of thousands of rows fast
    view->setAllColumnsShowFocus(true);
    view->setAlternatingRowColors(true);
    view->setSelectionMode(QAbstractItemView::ExtendedSelection);
    view->setSelectionBehavior(QAbstractItemView::SelectRows);
    view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    view->setSortingEnabled(false);  // the order is the core's
    view->header()->setSectionsMovable(false);
    view->header()->setStretchLastSection(false);
    static constexpr int widths[] = {150, 150, 45, 180, 50, 45, 90, 30, 220, 220, 90, 130, 80};
    for (int col = 0; col < int(std::size(widths)); ++col)
        view->header()->resizeSection(col, widths[col]);
    return view;
}

QWidget* makeLibraryFrame(BaseWidgets& w, QAbstractItemModel* model)
{
    QGroupBox* library = frame("FrameLibrary", QStringLiteral("Library"));
    w.list = makeTrackView(model);
    (new QVBoxLayout(library))->addWidget(w.list);
    w.lockable << library << w.list;
    return library;
}

// LibShield is no child of the library frame: the lock disables that frame,
// and the progress panel on the shield must stay lively.
QWidget* makeShield(BaseWidgets& w)
{
    auto* shield = new QFrame;
    shield->setObjectName(QStringLiteral("LibShield"));
    shield->setFrameShape(QFrame::StyledPanel);
    shield->setAutoFillBackground(true);
    w.progress = new ProgressPanel(shield);
    (new QGridLayout(shield))->addWidget(w.progress, 0, 0, Qt::AlignCenter);
    shield->hide();
    w.libShield = shield;
    return shield;
}

QWidget* makePlaylistFrame(BaseWidgets& w)
{
    QGroupBox* playlist = frame("FramePlaylist", QStringLiteral("Playlist"));
    auto* list = new QTreeView;
    list->setObjectName(QStringLiteral("Play_List"));
    list->setRootIsDecorated(false);
    list->setItemsExpandable(false);
    list->setUniformRowHeights(true);
    list->setAllColumnsShowFocus(true);
    list->setSelectionMode(QAbstractItemView::SingleSelection);
    list->setSelectionBehavior(QAbstractItemView::SelectRows);
    list->setEditTriggers(QAbstractItemView::NoEditTriggers);
    auto* shield = new QFrame;
    shield->setObjectName(QStringLiteral("PlayShield"));
    shield->setFrameShape(QFrame::StyledPanel);
    shield->hide();
    auto* grid = new QGridLayout(playlist);
    grid->addWidget(list, 0, 0);
    grid->addWidget(shield, 0, 0);
    w.playList = list;
    w.playShield = shield;
    w.lockable << playlist << list;
    return playlist;
}

QWidget* makeLowerPanels(BaseWidgets& w)
{
    auto* lower = new QWidget;
    lower->setFixedHeight(kLowerPanelHeight);
    auto* row = new QHBoxLayout(lower);
    row->setContentsMargins(0, 0, 0, 0);

    // The CD player takes the file player's place while it is open.
    auto* players = new QVBoxLayout;
    QGroupBox* player = frame("Player_Frame");
    w.player = player;
    QGroupBox* cdPlayer = frame("CD_Player_Frame");
    cdPlayer->hide();
    players->addWidget(player);
    players->addWidget(cdPlayer);
    row->addLayout(players, 4);
    row->addWidget(makePlaylistFrame(w), 5);

    QGroupBox* convert = frame("FrameConvert");
    row->addWidget(convert, 2);

    QGroupBox* search = frame("FrameSearch");
    auto* searchBox = new QFrame;
    searchBox->setObjectName(QStringLiteral("SearchBox"));
    (new QVBoxLayout(search))->addWidget(searchBox);
    row->addWidget(search, 1);

    w.lockable << player << cdPlayer << convert << search << searchBox;
    return lower;
}

// The track on show stands beside the library and the player from top to
// bottom: its ID3v2.3 tag, the one a user edits most, its ID3v1.1 tag and its
// audio. Where the screen is too low for all three, the column scrolls.
QWidget* makeTagColumn(BaseWidgets& w)
{
    auto* column = new QWidget;
    column->setObjectName(QStringLiteral("TagColumn"));
    auto* stack = new QVBoxLayout(column);
    stack->setContentsMargins(0, 0, 0, 0);
    w.tag2 = frame("FrameTag2");
    w.tag1 = frame("FrameTag1");
    w.mpeg = frame("FrameMPEG");
    stack->addWidget(w.tag2);
    stack->addWidget(w.tag1);
    stack->addWidget(w.mpeg);
    stack->addStretch(1);
    auto* scroll = new QScrollArea;
    scroll->setObjectName(QStringLiteral("TagScroll"));
    scroll->setWidget(column);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setMinimumWidth(kTagColumnMinWidth);
    scroll->setMaximumWidth(kTagColumnMaxWidth);
    w.lockable << w.tag1 << w.tag2 << w.mpeg;
    return scroll;
}

}  // namespace

BaseWidgets Build_Base_Layout(QWidget* window, QAbstractItemModel* trackModel)
{
    BaseWidgets w;
    w.central = new QWidget(window);
    auto* grid = new QGridLayout(w.central);
    // Frame and shield share one cell, the shield on top: it covers exactly
    // the library's room.
    grid->addWidget(makeLibraryFrame(w, trackModel), 0, 0);
    grid->addWidget(makeShield(w), 0, 0);
    grid->addWidget(makeLowerPanels(w), 1, 0);
    grid->addWidget(makeTagColumn(w), 0, 1, 2, 1);
    grid->setRowStretch(0, 1);
    grid->setColumnStretch(0, 3);
    grid->setColumnStretch(1, 1);
    return w;
}

}  // namespace sonorit::ui
