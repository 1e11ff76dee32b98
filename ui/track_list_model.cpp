#include "track_list_model.h"

namespace sonorit::ui {

TrackListModel::TrackListModel(TrackList& list, QObject* parent)
    : QAbstractTableModel(parent), list_(list), shownRows_(list.count())
{
    list_.setObserver(this);
}

TrackListModel::~TrackListModel()
{
    list_.setObserver(nullptr);
}

int TrackListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : shownRows_;
}

int TrackListModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : TrackColumnCount;
}

QVariant TrackListModel::data(const QModelIndex& index, int role) const
{
    // Between a change and the deferred reset the view may still ask for rows
    // that have gone.
    if (role != Qt::DisplayRole || !index.isValid() || index.row() >= list_.count())
        return QVariant();
    return list_.field(index.row(), index.column());
}

QVariant TrackListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 || section >= TrackColumnCount)
        return QAbstractTableModel::headerData(section, orientation, role);
    return trackColumnCaptions()[static_cast<size_t>(section)];
}

void TrackListModel::reset()
{
    beginResetModel();
    shownRows_ = list_.count();
    dirty_ = false;
    endResetModel();
    emit coreSelectionChanged();
}

void TrackListModel::listReset()
{
    if (list_.hidden())
        dirty_ = true;
    else
        reset();
}

void TrackListModel::rowChanged(int row)
{
    if (list_.hidden() || dirty_ || row >= shownRows_)
        dirty_ = true;
    else
        emit dataChanged(index(row, 0), index(row, TrackColumnCount - 1));
}

void TrackListModel::selectionChanged(int /*row*/)
{
    if (inStep())
        emit coreSelectionChanged();
}

void TrackListModel::visibilityChanged(bool hidden)
{
    emit listHidden(hidden);
    // A selection made while the list was hidden did not reach the view.
    if (!hidden && dirty_)
        reset();
    else if (!hidden)
        emit coreSelectionChanged();
}

}  // namespace sonorit::ui
