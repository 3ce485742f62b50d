#pragma once
#include <functional>
#include <vector>

#include "modes/framework/ModeHost.h"
#include "screen/ResultTableView.h"
#include "screen/WindowView.h"

/// The rows of the current mode in the result table, what the user selects there, and the height
/// of the window that follows from the number of rows.
/// Owner:   AppDelegate. Threads: main.
class ResultTableController : public ResultTableData {
  public:
    ResultTableController(ResultTableView& table, WindowView& window, ModeHost& host);

    // ResultTableData
    size_t numberOfRows() const override;
    RowContent row(size_t row) const override;
    std::optional<RowAction> actionOf(size_t row, const RowContent& shown) const override;

    double heightOfRow() const;
    /// It may be cut off at the top.
    size_t firstRowInSight() const;
    /// Draws the rows again that changed, or all.
    void applyDiffableDataSourceSnapshotAnimated(bool animated, const ChangedRows& forRows);
    /// Draws what is on screen again.
    void updateMarkersOfVisibleItems();
    /// The rows whose icons may have changed, and those in sight: only these are drawn again.
    struct ActionIconRows {
        const std::vector<size_t>& previouslySelectedRows;
        const std::vector<size_t>& selectedRows;
        size_t firstVisibleIndex, lastVisibleIndex;
    };
    void updateActionIconsWithPreviouslySelectedRows(const ActionIconRows& rows);
    /// Return does something else now to what is selected, or was.
    void updateActionIcons(const std::vector<size_t>& previous = {});
    /// As high as the rows need, the top edge where it was.
    void adjustWindowHeight();
    /// By the user's or the program's doing: the mode's selection follows.
    void tableViewSelectionDidChange();
    /// The mode's scroll position follows.
    void clipViewBoundsDidChange();
    /// Called after each reload; for whoever watches what is shown.
    void setReloadedBlock(std::function<void(const ChangedRows&)> block) {
        reloaded_ = std::move(block);
    }
    /// Adds to a row what is known beside its mode. Called for each row that the table asks for.
    void setDecoration(std::function<void(RowContent&, size_t row)> block) {
        decorate_ = std::move(block);
    }
    /// What Return does to a row. Called for each selected row that is drawn.
    using ActionSource = std::function<std::optional<RowAction>(size_t, const RowContent&)>;
    void setActionSource(ActionSource source) { action_ = std::move(source); }

  private:
    struct VisibleRows {
        size_t first, last;  // a row too many rather than one too few
    };
    VisibleRows visibleRows() const;

    ResultTableView& table_;
    WindowView& window_;
    ModeHost& host_;
    std::function<void(const ChangedRows&)> reloaded_;
    std::function<void(RowContent&, size_t row)> decorate_;
    ActionSource action_;
    bool resultTableViewReloadDataInProgress_ = false;
    int resultTableViewResizeInProgress_ = 0;  // resizings under way
    // The rows that were asked for last: the table asks row by row, a mode answers a screenful in
    // one section.
    mutable std::vector<RowContent> contents_;
    mutable size_t firstContent_ = 0;
};
