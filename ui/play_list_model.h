#pragma once
// Play_List as the view sees it: a table model over the core's rows. The
// core tells of a change after making it, so appends are inserted after the
// fact and everything else resets the view.
#include <QAbstractTableModel>

#include "playback/playback_state.h"

namespace sonorit::ui {

class PlayListModel : public QAbstractTableModel {
    Q_OBJECT
public:
    explicit PlayListModel(const PlayListRows& rows, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    void rowAppended();
    void rowChanged(int row);
    void reset();

private:
    const PlayListRows& rows_;
    int shownRows_ = 0;
};

}  // namespace sonorit::ui
