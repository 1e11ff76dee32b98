#include "track_list.h"

#include <algorithm>

namespace sonorit {

const std::array<QString, TrackColumnCount>& trackColumnCaptions()
{
    static const std::array<QString, TrackColumnCount> captions = {
        QStringLiteral("Artist"), QStringLiteral("Album"), QStringLiteral("Track"), QStringLiteral("Title"),
        QStringLiteral("Time"), QStringLiteral("Year"), QStringLiteral("Genre"), QStringLiteral("VA"),
        QStringLiteral("Folder"), QStringLiteral("Filename"), QStringLiteral("ID"),
        QStringLiteral("Last Changed"), QStringLiteral("Filelength")};
    return captions;
}

void TrackList::notifyReset()
{
    if (bulk_ > 0) {
        pendingReset_ = true;
        return;
    }
    if (observer_)
        observer_->listReset();
}

void TrackList::endBulk()
{
    if (bulk_ > 0 && --bulk_ == 0) {
        // A reset makes the view read the selection again; a change of the
        // selection alone is told as such.
        if (pendingReset_ && observer_)
            observer_->listReset();
        else if (pendingSelection_ && observer_)
            observer_->selectionChanged(selected_);
        pendingReset_ = pendingSelection_ = false;
    }
}

void TrackList::setField(int index, int column, const QString& value)
{
    rows_[static_cast<size_t>(index)][column] = value;
    if (bulk_ > 0)
        pendingReset_ = true;
    else if (observer_)
        observer_->rowChanged(index);
}

void TrackList::setRow(int index, const TrackRow& row)
{
    rows_[static_cast<size_t>(index)] = row;
    if (bulk_ > 0)
        pendingReset_ = true;
    else if (observer_)
        observer_->rowChanged(index);
}

void TrackList::insert(int index, TrackRow row)
{
    rows_.insert(rows_.begin() + index, std::move(row));
    marked_.insert(marked_.begin() + index, 0);
    if (selected_ >= index)
        ++selected_;
    notifyReset();
}

void TrackList::append(TrackRow row)
{
    rows_.push_back(std::move(row));
    marked_.push_back(0);
    notifyReset();
}

void TrackList::removeAt(int index)
{
    rows_.erase(rows_.begin() + index);
    markedCount_ -= marked_[static_cast<size_t>(index)];
    marked_.erase(marked_.begin() + index);
    if (selected_ == index)
        selected_ = -1;
    else if (selected_ > index)
        --selected_;
    notifyReset();
}

void TrackList::clear()
{
    rows_.clear();
    marked_.clear();
    markedCount_ = 0;
    selected_ = -1;
    notifyReset();
}

void TrackList::sortByColumn(int column, bool ascending)
{
    // The selection follows its row through the sort. Each key is case-folded
    // once, not in every comparison.
    const TrackRow* keep = selected_ >= 0 ? &rows_[static_cast<size_t>(selected_)] : nullptr;
    std::vector<QString> keys(rows_.size());
    std::vector<int> order(rows_.size());
    for (size_t i = 0; i < order.size(); ++i) {
        order[i] = static_cast<int>(i);
        keys[i] = rows_[i][column].toCaseFolded();
    }
    std::stable_sort(order.begin(), order.end(), [&](int a, int b) {
        const int c = QString::compare(keys[static_cast<size_t>(a)], keys[static_cast<size_t>(b)], Qt::CaseSensitive);
        return ascending ? c < 0 : c > 0;
    });
    std::vector<TrackRow> sorted;
    std::vector<char> marks(rows_.size());
    sorted.reserve(rows_.size());
    int newSelected = -1;
    for (size_t i = 0; i < order.size(); ++i) {
        if (keep && &rows_[static_cast<size_t>(order[i])] == keep)
            newSelected = static_cast<int>(i);
        marks[i] = marked_[static_cast<size_t>(order[i])];
        sorted.push_back(std::move(rows_[static_cast<size_t>(order[i])]));
    }
    rows_ = std::move(sorted);
    marked_ = std::move(marks);
    selected_ = newSelected;
    notifyReset();
}

void TrackList::notifySelection()
{
    if (bulk_ > 0)
        pendingSelection_ = true;
    else if (observer_)
        observer_->selectionChanged(selected_);
}

void TrackList::unmarkAll()
{
    // Mostly one row is selected, and that one is the current row.
    if (markedCount_ == 1 && selected_ >= 0 && marked_[static_cast<size_t>(selected_)])
        marked_[static_cast<size_t>(selected_)] = 0;
    else if (markedCount_ > 0)
        std::fill(marked_.begin(), marked_.end(), 0);
    markedCount_ = 0;
}

void TrackList::setSelection(const std::vector<int>& rows, int current)
{
    unmarkAll();
    for (const int r : rows) {
        if (r >= 0 && r < count() && !marked_[static_cast<size_t>(r)]) {
            marked_[static_cast<size_t>(r)] = 1;
            ++markedCount_;
        }
    }
    selected_ = (current >= 0 && current < count()) ? current : -1;
    notifySelection();
}

std::vector<int> TrackList::selectedRows() const
{
    std::vector<int> rows;
    for (int i = 0; i < count() && static_cast<int>(rows.size()) < markedCount_; ++i) {
        if (marked_[static_cast<size_t>(i)])
            rows.push_back(i);
    }
    return rows;
}

void TrackList::select(int index)
{
    unmarkAll();
    selected_ = (index >= 0 && index < count()) ? index : -1;
    if (selected_ >= 0) {
        marked_[static_cast<size_t>(selected_)] = 1;
        markedCount_ = 1;
    }
    notifySelection();
}

void TrackList::setHidden(bool hidden)
{
    hidden_ = hidden;
    if (observer_)
        observer_->visibilityChanged(hidden);
}

int TrackList::find(int column, const QString& text) const
{
    for (int i = 0; i < count(); ++i) {
        if (rows_[static_cast<size_t>(i)][column] == text)
            return i;
    }
    return -1;
}

}  // namespace sonorit
