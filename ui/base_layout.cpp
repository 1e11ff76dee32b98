#include "base_layout.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QTreeView>
#include <QVBoxLayout>

#include "progress_panel.h"

namespace sonorit::ui {

namespace {

// Room for the lower panels, which keep their height while the list takes
// whatever the window gives beyond it.
constexpr int kLowerPanelHeight = 230;

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

    auto* tags = new QVBoxLayout;
    QGroupBox* tag1 = frame("FrameTag1");
    QGroupBox* tag2 = frame("FrameTag2");
    tags->addWidget(tag1);
    tags->addWidget(tag2);
    row->addLayout(tags, 2);

    auto* info = new QVBoxLayout;
    QGroupBox* mpeg = frame("FrameMPEG");
    QGroupBox* convert = frame("FrameConvert");
    info->addWidget(mpeg);
    info->addWidget(convert);
    row->addLayout(info, 2);

    QGroupBox* search = frame("FrameSearch");
    auto* searchBox = new QFrame;
    searchBox->setObjectName(QStringLiteral("SearchBox"));
    (new QVBoxLayout(search))->addWidget(searchBox);
    row->addWidget(search, 1);

    w.lockable << player << cdPlayer << tag1 << tag2 << mpeg << convert << search << searchBox;
    return lower;
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
    grid->setRowStretch(0, 1);
    return w;
}

}  // namespace sonorit::ui
