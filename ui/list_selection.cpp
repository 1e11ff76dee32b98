#include "list_selection.h"

#include <QItemSelectionModel>
#include <QTreeView>
#include <algorithm>

#include "track_list_model.h"

namespace sonorit::ui {

ListSelection::ListSelection(QTreeView* view, TrackListModel* model) : view_(view), model_(model)
{
    connect(model, &TrackListModel::coreSelectionChanged, this, &ListSelection::fromCore);
    QItemSelectionModel* selection = view->selectionModel();
    // A click changes the selection first and the current row after it; both
    // are passed on, the second corrects the current row of the first.
    connect(selection, &QItemSelectionModel::selectionChanged, this, &ListSelection::fromView);
    connect(selection, &QItemSelectionModel::currentChanged, this, &ListSelection::fromView);
}

void ListSelection::fromCore()
{
    if (syncing_)
        return;
    syncing_ = true;
    const TrackList& list = model_->list();
    const int shown = model_->rowCount();
    // Runs of adjacent rows as one range each: a select-all of a large
    // library is then a single range.
    QItemSelection wanted;
    const std::vector<int> rows = list.selectedRows();
    for (size_t i = 0; i < rows.size();) {
        size_t j = i;
        while (j + 1 < rows.size() && rows[j + 1] == rows[j] + 1)
            ++j;
        if (rows[i] < shown)
            wanted.select(model_->index(rows[i], 0), model_->index(std::min(rows[j], shown - 1), 0));
        i = j + 1;
    }
    QItemSelectionModel* selection = view_->selectionModel();
    const int current = list.selected();
    if (current >= 0 && current < shown) {
        const QModelIndex index = model_->index(current, 0);
        selection->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
        view_->scrollTo(index);
    } else {
        selection->clearCurrentIndex();
    }
    selection->select(wanted, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    syncing_ = false;
}

void ListSelection::fromView()
{
    if (syncing_ || !model_->inStep())
        return;
    const QItemSelectionModel* selection = view_->selectionModel();
    std::vector<int> rows;
    for (const QItemSelectionRange& range : selection->selection()) {
        for (int row = range.top(); row <= range.bottom(); ++row)
            rows.push_back(row);
    }
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    const QModelIndex currentIndex = selection->currentIndex();
    const int current = currentIndex.isValid() ? currentIndex.row() : -1;
    TrackList& list = model_->list();
    if (current == list.selected() && rows == list.selectedRows())
        return;
    syncing_ = true;
    list.setSelection(rows, current);
    syncing_ = false;
}

}  // namespace sonorit::ui
