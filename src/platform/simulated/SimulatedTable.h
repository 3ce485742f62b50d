#pragma once
#include <functional>
#include <set>
#include <utility>

#include "screen/ResultTableView.h"

/// A result table without a screen: it keeps its selection and its place as one on a screen does.
/// Owner:   SimulatedScreen. Threads: main.
class SimulatedTable : public ResultTableView {
  public:
    /// visibleHeight: of the part of it that the window shows.
    explicit SimulatedTable(std::function<double()> visibleHeight)
        : visibleHeight_(std::move(visibleHeight)) {}

    void setData(const ResultTableData* data) override { data_ = data; }
    void setDelegate(ResultTableViewDelegate* delegate) override { delegate_ = delegate; }
    void reloadData() override;
    void reloadRows(const std::vector<size_t>& rows) override;
    void redrawActions(const std::vector<size_t>& rows) override { redrawn_.push_back(rows); }
    void setRowHeight(double height) override { rowHeight_ = height; }
    void setHasVerticalScroller(bool has) override { hasScroller_ = has; }
    void selectRow(size_t row, bool extend) override;
    void selectRows(size_t first, size_t last) override;
    void deselectAll() override;
    void setAllowsEmptySelection(bool allows) override { allowsEmpty_ = allows; }
    void setAllowsMultipleSelection(bool allows) override { allowsMultiple_ = allows; }
    std::optional<size_t> selectedRow() const override {
        if (selected_.empty()) return std::nullopt;
        return selected_.contains(lastSelected_) ? lastSelected_ : *selected_.begin();
    }
    std::vector<size_t> selectedRows() const override {
        return {selected_.begin(), selected_.end()};
    }
    std::optional<size_t> clickedRow() const override { return clicked_; }
    void setClickedRow(std::optional<size_t> row) override { clicked_ = row; }
    Point menuPlaceOfRow(size_t) const override { return {}; }
    bool isRowVisible(size_t row) const override;
    void scrollRowToVisible(size_t row) override;
    Point clipOrigin() const override { return {0, offset_}; }
    void setClipOrigin(Point origin) override;
    void beginEditingRow(const RowEdit& edit) override { edit_ = edit; }
    void endEditingRow() override;

    // What a user sees and does.
    size_t numberOfRows() const { return count_; }
    RowContent row(size_t row) const { return data_ ? data_->row(row) : RowContent{}; }
    /// The icon in a row that is selected.
    std::optional<RowAction> action(size_t row) const {
        return data_ && selected_.contains(row) ? data_->actionOf(row, data_->row(row))
                                                : std::nullopt;
    }
    double rowHeight() const { return rowHeight_; }
    bool hasScroller() const { return hasScroller_; }
    void click(std::vector<size_t> rows);
    void doubleClick(size_t row);
    void rightClick(size_t row);
    /// The editor over a row, if there is one.
    const std::optional<RowEdit>& edit() const { return edit_; }
    /// Replaces its text.
    void typeIntoEdit(std::u16string_view text);
    /// Return or Escape in it.
    void sendToEdit(RowEditCommand command);
    void scrollTo(double offset) { setClipOrigin({0, offset}); }
    /// What the table was told since the last call; an empty list of rows: all.
    struct Change {
        bool all = true;
        std::vector<size_t> rows = {};
    };
    std::vector<Change> takeChanges() { return std::exchange(changes_, {}); }
    /// The rows whose icons were to be drawn again since the last call.
    std::vector<std::vector<size_t>> takeRedrawnActions() { return std::exchange(redrawn_, {}); }

  private:
    void select(std::set<size_t> rows);

    const std::function<double()> visibleHeight_;
    const ResultTableData* data_ = nullptr;
    ResultTableViewDelegate* delegate_ = nullptr;
    std::vector<Change> changes_;
    std::vector<std::vector<size_t>> redrawn_;
    std::set<size_t> selected_;
    std::optional<size_t> clicked_;
    std::optional<RowEdit> edit_;
    size_t count_ = 0, lastSelected_ = 0;
    double rowHeight_ = 47;
    double offset_ = 0;
    bool hasScroller_ = false, allowsEmpty_ = true, allowsMultiple_ = true;
};
