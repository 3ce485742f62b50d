#include "platform/simulated/SimulatedTable.h"

#include <algorithm>

namespace {
constexpr double kSpacing = 2;
}

void SimulatedTable::reloadData() {
    changes_.push_back({});
    count_ = data_ ? data_->numberOfRows() : 0;
    select({});
    setClipOrigin({0, offset_});
}

void SimulatedTable::reloadRows(const std::vector<size_t>& rows) {
    changes_.push_back({.all = false, .rows = rows});
}

void SimulatedTable::selectRow(size_t row, bool extend) {
    if (row >= count_) return;
    std::set<size_t> rows = extend && allowsMultiple_ ? selected_ : std::set<size_t>();
    rows.insert(row);
    lastSelected_ = row;
    select(std::move(rows));
}

void SimulatedTable::selectRows(size_t first, size_t last) {
    if (!allowsMultiple_) {
        selectRow(last, false);
        return;
    }
    std::set<size_t> rows;
    for (size_t row = first; row <= last && row < count_; row++) rows.insert(rows.end(), row);
    select(std::move(rows));
}

void SimulatedTable::deselectAll() {
    if (allowsEmpty_) select({});
}

void SimulatedTable::select(std::set<size_t> rows) {
    if (rows == selected_) return;
    selected_ = std::move(rows);
    if (delegate_) delegate_->tableViewSelectionDidChange();
}

bool SimulatedTable::isRowVisible(size_t row) const {
    const double top = static_cast<double>(row) * (rowHeight_ + kSpacing) - offset_;
    return row < count_ && top >= 0 && top + rowHeight_ <= visibleHeight_();
}

void SimulatedTable::scrollRowToVisible(size_t row) {
    const double top = static_cast<double>(row) * (rowHeight_ + kSpacing);
    const double bottom = top + rowHeight_ + kSpacing, visible = visibleHeight_();
    if (bottom > offset_ + visible) setClipOrigin({0, bottom - visible});
    if (top < offset_) setClipOrigin({0, top});
}

void SimulatedTable::setClipOrigin(Point origin) {
    const double height = static_cast<double>(count_) * (rowHeight_ + kSpacing);
    const double offset = std::clamp(origin.y, 0.0, std::max(0.0, height - visibleHeight_()));
    if (offset == offset_) return;
    offset_ = offset;
    if (delegate_) delegate_->clipViewBoundsDidChange();
}

void SimulatedTable::click(std::vector<size_t> rows) {
    std::erase_if(rows, [this](size_t row) { return row >= count_; });
    select({rows.begin(), rows.end()});
}

void SimulatedTable::endEditingRow() {
    if (!edit_) return;
    edit_.reset();
    if (delegate_) delegate_->rowEditDidEnd();
}

void SimulatedTable::typeIntoEdit(std::u16string_view text) {
    if (edit_) edit_->text = text;
    if (edit_) edit_->selection = {edit_->text.size(), 0};
}

void SimulatedTable::sendToEdit(RowEditCommand command) {
    if (!edit_ || !delegate_) return;
    const std::u16string text = edit_->text;
    if (!delegate_->rowEditDoCommand(command, text)) endEditingRow();
}

void SimulatedTable::doubleClick(size_t row) {
    click({row});
    if (delegate_ && row < count_) delegate_->rowDoubleClicked(row);
}

void SimulatedTable::rightClick(size_t row) {
    if (!delegate_ || row >= count_) return;
    clicked_ = row;
    delegate_->contextMenuWanted({});
}
