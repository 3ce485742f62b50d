#include "core/ResultTableController.h"

#include <algorithm>

#include "core/WindowGeometry.h"
#include "core/state/GlobalState.h"
#include "util/World.h"
#include "util/log.h"

namespace {

constexpr size_t kFetchedRows = 32;  // a screenful and some

std::string listOf(const std::vector<size_t>& rows) {
    std::string text;
    for (const size_t row : rows) text += (text.empty() ? "" : ", ") + std::to_string(row);
    return text;
}

}  // namespace

ResultTableController::ResultTableController(ResultTableView& table, WindowView& window,
                                             ModeHost& host)
    : table_(table), window_(window), host_(host) {}

size_t ResultTableController::numberOfRows() const {
    TRVMode* mode = host_.currentMode();
    if (!mode) return 0;
    // An empty field shows an empty table, whatever the last result was.
    if (mode->identifier() == kSearchMode && mode->searchString().empty()) return 0;
    return mode->filteredCount();
}

RowContent ResultTableController::row(size_t row) const {
    if (row < firstContent_ || row >= firstContent_ + contents_.size()) {
        TRVMode* mode = host_.currentMode();
        if (!mode) return {};
        firstContent_ = row > kFetchedRows / 4 ? row - kFetchedRows / 4 : 0;
        contents_ = mode->rowContents(firstContent_, kFetchedRows);
        if (row >= firstContent_ + contents_.size()) return {};
    }
    RowContent content = contents_[row - firstContent_];
    if (decorate_) decorate_(content, row);
    return content;
}

std::optional<RowAction> ResultTableController::actionOf(size_t row,
                                                         const RowContent& shown) const {
    return action_ ? action_(row, shown) : std::nullopt;
}

double ResultTableController::heightOfRow() const {
    TRVMode* mode = host_.currentMode();
    if (!processFlags.processMetadata || !mode) return WindowGeometry::kRowHeight;
    return WindowGeometry::kRowHeight +
           WindowGeometry::kLineHeight * static_cast<double>(mode->numberOfAdditionalRows());
}

size_t ResultTableController::firstRowInSight() const {
    const double pitch = heightOfRow() + WindowGeometry::kRowSpacing;
    return static_cast<size_t>(std::max(0.0, table_.clipOrigin().y) / pitch);
}

void ResultTableController::applyDiffableDataSourceSnapshotAnimated(bool,
                                                                    const ChangedRows& forRows) {
    resultTableViewReloadDataInProgress_ = true;
    contents_.clear();
    table_.setRowHeight(heightOfRow());
    if (forRows) {
        logIf(processFlags.debugSearch, Debug, "Reloading changed rows %s of result table",
              listOf(*forRows).c_str());
        table_.reloadRows(*forRows);
    } else {
        logIf(processFlags.debugSearch, Debug, "Performing complete reload of result table");
        table_.reloadData();
    }
    resultTableViewReloadDataInProgress_ = false;
    if (reloaded_) reloaded_(forRows);
}

void ResultTableController::updateMarkersOfVisibleItems() {
    std::vector<size_t> rows;
    const VisibleRows visible = visibleRows();
    const size_t end = std::min(numberOfRows(), visible.last + 1);
    for (size_t row = visible.first; row < end; row++) rows.push_back(row);
    contents_.clear();
    table_.reloadRows(rows);
}

ResultTableController::VisibleRows ResultTableController::visibleRows() const {
    const size_t first = firstRowInSight();
    const auto most = static_cast<size_t>(GlobalState::sharedInstance().maxNumberOfRows());
    return {.first = first, .last = first + most};
}

void ResultTableController::updateActionIconsWithPreviouslySelectedRows(
    const ActionIconRows& icons) {
    std::vector<size_t> rows;
    for (const auto* selected : {&icons.previouslySelectedRows, &icons.selectedRows}) {
        const auto end =
            std::upper_bound(selected->begin(), selected->end(), icons.lastVisibleIndex);
        rows.insert(rows.end(), std::lower_bound(selected->begin(), end, icons.firstVisibleIndex),
                    end);
    }
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    if (!rows.empty()) table_.redrawActions(rows);
}

void ResultTableController::updateActionIcons(const std::vector<size_t>& previous) {
    const VisibleRows visible = visibleRows();
    const std::vector<size_t> selected = table_.selectedRows();
    updateActionIconsWithPreviouslySelectedRows({.previouslySelectedRows = previous,
                                                 .selectedRows = selected,
                                                 .firstVisibleIndex = visible.first,
                                                 .lastVisibleIndex = visible.last});
}

void ResultTableController::adjustWindowHeight() {
    if (!MainQueue::isMainThread()) logError("Method must be run on main thread!");
    GlobalState& state = GlobalState::sharedInstance();
    const bool maximized = state.maximized().value();
    const auto rows = static_cast<long>(numberOfRows());
    const double rowHeight = rows < 1 ? 0 : heightOfRow();
    const long limit = WindowGeometry::rowLimit(maximized, window_.visibleScreenFrame(), rowHeight);
    state.setMaxNumberOfRows(limit);
    resultTableViewResizeInProgress_++;
    table_.setHasVerticalScroller(rows > limit);
    MainQueue::async([this, rows, limit, rowHeight, maximized] {
        Rect frame = window_.frame();
        if (maximized) {
            const Rect screen = window_.screenFrame();
            frame.y = screen.y + screen.height - frame.height;
        }
        const double height = WindowGeometry::heightForRows(std::min(rows, limit), rowHeight);
        window_.setFrame(WindowGeometry::withHeight(frame, height), true,
                         [this] { resultTableViewResizeInProgress_--; });
        if (TRVMode* mode = host_.currentMode()) mode->windowHeightUpdated();
    });
}

void ResultTableController::tableViewSelectionDidChange() {
    TRVMode* mode = host_.currentMode();
    if (!mode || mode->restoreSelectionInProgress() || resultTableViewReloadDataInProgress_) return;
    std::vector<size_t> previous{0};
    if (const auto& old = mode->selection())
        previous = {old->selectedRowIndexes.begin(), old->selectedRowIndexes.end()};
    mode->saveSelection();
    if (auto& saved = mode->selection()) saved->pathSelection.reset();
    updateActionIcons(previous);
    mode->selectionDidChangeFrom(previous, table_.selectedRows());
    host_.updateTextsOfCurrentMode();
}

void ResultTableController::clipViewBoundsDidChange() {
    if (resultTableViewResizeInProgress_ > 0) return;
    TRVMode* mode = host_.currentMode();
    if (mode && mode->selection()) mode->selection()->clipOrigin = table_.clipOrigin();
}
