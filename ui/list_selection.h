#pragma once
// Keeps the selection of MP3_List's view and the core's TrackList in step:
// what the user selects reaches the core as rows and current row, and what the
// core selects shows in the view, several rows included.
#include <QObject>

class QTreeView;

namespace sonorit::ui {

class TrackListModel;

class ListSelection : public QObject {
public:
    ListSelection(QTreeView* view, TrackListModel* model);

private:
    void fromCore();
    void fromView();

    QTreeView* view_;
    TrackListModel* model_;
    bool syncing_ = false;  // one side is being set from the other
};

}  // namespace sonorit::ui
