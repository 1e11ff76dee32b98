#pragma once
// The regions of the main window: the library frame with MP3_List and its
// shield on top, the panels of the player, playlist, tags, conversion and
// search below. Every control carries its program name as object name.
#include <QList>

class QAbstractItemModel;
class QGroupBox;
class QTreeView;
class QWidget;

namespace sonorit::ui {

class ProgressPanel;

struct BaseWidgets {
    QWidget* central = nullptr;
    QTreeView* list = nullptr;       // MP3_List
    QWidget* libShield = nullptr;    // LibShield, holds the progress panel
    ProgressPanel* progress = nullptr;
    QGroupBox* player = nullptr;     // Player_Frame
    QTreeView* playList = nullptr;   // Play_List
    QWidget* playShield = nullptr;   // PlayShield, over Play_List while a list loads
    QGroupBox* tag1 = nullptr;       // FrameTag1
    QGroupBox* tag2 = nullptr;       // FrameTag2
    QGroupBox* mpeg = nullptr;       // FrameMPEG
    QList<QWidget*> lockable;        // what Lock_Main_Window disables
};

BaseWidgets Build_Base_Layout(QWidget* window, QAbstractItemModel* trackModel);

}  // namespace sonorit::ui
