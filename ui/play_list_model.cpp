#include "play_list_model.h"

namespace sonorit::ui {

PlayListModel::PlayListModel(const PlayListRows& rows, QObject* parent)
    : QAbstractTableModel(parent), rows_(rows), shownRows_(rows.count())
{
}

int PlayListModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : shownRows_; }
int PlayListModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : PlayColumnCount; }

QVariant PlayListModel::data(const QModelIndex& index, int role) const
{
    if (role != Qt::DisplayRole || !index.isValid() || index.row() >= rows_.count())
        return {};
    return rows_.field(index.row(), index.column());
}

QVariant PlayListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    static const char* const captions[PlayColumnCount] = {"Artist", "Album", "Title", "Time"};
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 || section >= PlayColumnCount)
        return {};
    return QLatin1String(captions[section]);
}

void PlayListModel::rowAppended()
{
    if (rows_.count() <= shownRows_) {
        reset();
        return;
    }
    beginInsertRows(QModelIndex(), shownRows_, rows_.count() - 1);
    shownRows_ = rows_.count();
    endInsertRows();
}

void PlayListModel::rowChanged(int row)
{
    if (row < shownRows_)
        emit dataChanged(index(row, 0), index(row, PlayColumnCount - 1));
}

void PlayListModel::reset()
{
    beginResetModel();
    shownRows_ = rows_.count();
    endResetModel();
}

}  // namespace sonorit::ui
