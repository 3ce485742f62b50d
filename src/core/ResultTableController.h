#pragma once
#include <vector>

#include "modes/framework/TRVMode.h"
#include "screen/ResultTableView.h"
#include "screen/WindowView.h"

/// The rows of the current mode in the result table, and the height of the window that follows from
/// their number.
/// Owner:   AppDelegate. Threads: main.
class ResultTableController : public ResultTableData {
  public:
    ResultTableController(ResultTableView& table, WindowView& window);

    // ResultTableData
    size_t numberOfRows() const override;
    RowContent row(size_t row) const override;

    /// Draws the rows again that changed, or all.
    void applyDiffableDataSourceSnapshotAnimated(bool animated, const ChangedRows& rows);
    /// As high as the rows need, the top edge where it was.
    void adjustWindowHeight();
    /// Called after each reload; for whoever watches what is shown.
    void setReloadedBlock(std::function<void()> block) { reloaded_ = std::move(block); }

  private:
    ResultTableView& table_;
    WindowView& window_;
    std::function<void()> reloaded_;
    // The rows that were asked for last: the table asks row by row, a mode answers a screenful in
    // one section.
    mutable std::vector<RowContent> contents_;
    mutable size_t firstContent_ = 0;
};
