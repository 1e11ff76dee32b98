#pragma once
// MP3_List as the view sees it: a table model over the core's TrackList. The
// core sorts; the view only shows. While the list is hidden for bulk work the
// model only notes that something changed and resets once it shows again.
#include <QAbstractTableModel>

#include "library/track_list.h"

namespace sonorit::ui {

class TrackListModel : public QAbstractTableModel, private TrackListObserver {
    Q_OBJECT
public:
    explicit TrackListModel(TrackList& list, QObject* parent = nullptr);
    ~TrackListModel() override;

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    TrackList& list() { return list_; }
    // False while the core keeps the list hidden, and after a change made
    // meanwhile until the reset that shows it: the view's rows may not be
    // the list's rows then.
    bool inStep() const { return !list_.hidden() && !dirty_; }

signals:
    // The core's selection changed, or the rows were reset; the view takes
    // the selection anew from the list.
    void coreSelectionChanged();
    // The core hid or showed MP3_List for bulk work.
    void listHidden(bool hidden);

private:
    void listReset() override;
    void rowChanged(int row) override;
    void selectionChanged(int row) override;
    void visibilityChanged(bool hidden) override;
    void reset();

    TrackList& list_;
    int shownRows_ = 0;  // the row count the view was last told
    bool dirty_ = false;
};

}  // namespace sonorit::ui
