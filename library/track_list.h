#pragma once
// MP3_List, the library in memory: one row per track, 13 text columns. The
// windows show it through an item model; the core never asks a widget.
#include <QString>
#include <array>
#include <functional>
#include <vector>

namespace sonorit {

enum TrackColumn {
    ColArtist = 0, ColAlbum, ColTrack, ColTitle, ColTime, ColYear, ColGenre, ColVA,
    ColFolder, ColFilename, ColID, ColLastChanged, ColFilelength,
    TrackColumnCount
};

using TrackRow = std::array<QString, TrackColumnCount>;

const std::array<QString, TrackColumnCount>& trackColumnCaptions();

class TrackListObserver {
public:
    virtual ~TrackListObserver() = default;
    virtual void listReset() = 0;                 // anything may have changed
    virtual void rowChanged(int row) = 0;
    virtual void selectionChanged(int row) = 0;
    virtual void visibilityChanged(bool hidden) = 0;
};

class TrackList {
public:
    int count() const { return static_cast<int>(rows_.size()); }
    bool isEmpty() const { return rows_.empty(); }
    const TrackRow& row(int index) const { return rows_[static_cast<size_t>(index)]; }
    const QString& field(int index, int column) const { return rows_[static_cast<size_t>(index)][column]; }

    void setField(int index, int column, const QString& value);
    void setRow(int index, const TrackRow& row);
    void insert(int index, TrackRow row);
    void append(TrackRow row);
    void removeAt(int index);
    void clear();
    void reserve(int n) { rows_.reserve(static_cast<size_t>(n)); }

    // Stable sort by one column, case-insensitive as the list control sorts;
    // sorting on "Filename" and then on "Folder" gives folder-major order.
    void sortByColumn(int column, bool ascending = true);

    // The selected row, -1 for none. Selecting a row makes it the whole
    // selection.
    int selected() const { return selected_; }
    void select(int index);
    // Several rows selected, `current` the one that counts as the selected row.
    void setSelection(const std::vector<int>& rows, int current);
    // All selected rows, rising.
    std::vector<int> selectedRows() const;
    bool isSelected(int index) const { return marked_[static_cast<size_t>(index)] != 0; }

    bool hidden() const { return hidden_; }
    void setHidden(bool hidden);

    // The first row whose column equals the text exactly, -1 if none.
    int find(int column, const QString& text) const;

    void setObserver(TrackListObserver* observer) { observer_ = observer; }
    // Groups many changes into one reset for the observer.
    void beginBulk() { ++bulk_; }
    void endBulk();

private:
    void notifyReset();

    void unmarkAll();
    void notifySelection();

    std::vector<TrackRow> rows_;
    std::vector<char> marked_;  // the selection, moving with the rows
    int markedCount_ = 0;
    int selected_ = -1;
    bool hidden_ = false;
    int bulk_ = 0;
    bool pendingReset_ = false;
    bool pendingSelection_ = false;
    TrackListObserver* observer_ = nullptr;
};

}  // namespace sonorit
