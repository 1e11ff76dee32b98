#include "playback_state.h"

#include <QRandomGenerator>

#include "player_view.h"

namespace sonorit {

void PlayListRows::append(PlayRow row)
{
    rows_.push_back(std::move(row));
    if (bulk_)
        pendingReset_ = true;
    else if (view_)
        view_->playListRowAppended(count() - 1);
}

void PlayListRows::setRow(int index, PlayRow row)
{
    if (index < 0 || index >= count())
        return;
    rows_[static_cast<size_t>(index)] = std::move(row);
    if (bulk_)
        pendingReset_ = true;
    else if (view_)
        view_->playListRowChanged(index);
}

void PlayListRows::removeAt(int index)
{
    if (index < 0 || index >= count())
        return;
    rows_.erase(rows_.begin() + index);
    if (selected_ == index)
        selected_ = -1;
    else if (selected_ > index)
        --selected_;
    if (bulk_)
        pendingReset_ = true;
    else if (view_)
        view_->playListRowRemoved(index);
}

void PlayListRows::clear()
{
    rows_.clear();
    selected_ = -1;
    if (bulk_)
        pendingReset_ = true;
    else if (view_)
        view_->playListCleared();
}

void PlayListRows::select(int index)
{
    selected_ = index >= 0 && index < count() ? index : -1;
    if (view_ && !bulk_ && selected_ >= 0)
        view_->playListRowSelected(selected_);
}

void PlayListRows::endBulk()
{
    if (bulk_ > 0 && --bulk_ == 0 && pendingReset_) {
        pendingReset_ = false;
        if (view_) {
            view_->playListReset();
            if (selected_ >= 0)
                view_->playListRowSelected(selected_);
        }
    }
}

PlaybackState::PlaybackState()
    : Random([] { return QRandomGenerator::global()->generateDouble(); })
{
}

}  // namespace sonorit
