#include "core/ResultTableController.h"

#include <algorithm>

#include "core/WindowGeometry.h"
#include "core/state/GlobalState.h"
#include "util/World.h"
#include "util/log.h"

namespace {
constexpr size_t kFetchedRows = 32;  // a screenful and some
}

ResultTableController::ResultTableController(ResultTableView& table, WindowView& window)
    : table_(table), window_(window) {}

size_t ResultTableController::numberOfRows() const {
    TRVMode* mode = GlobalState::sharedInstance().currentMode();
    if (!mode) return 0;
    // An empty field shows an empty table, whatever the last result was.
    if (mode->identifier() == kSearchMode && mode->searchString().empty()) return 0;
    return mode->filteredCount();
}

RowContent ResultTableController::row(size_t row) const {
    if (row < firstContent_ || row >= firstContent_ + contents_.size()) {
        TRVMode* mode = GlobalState::sharedInstance().currentMode();
        if (!mode) return {};
        firstContent_ = row > kFetchedRows / 4 ? row - kFetchedRows / 4 : 0;
        contents_ = mode->rowContents(firstContent_, kFetchedRows);
        if (row >= firstContent_ + contents_.size()) return {};
    }
    return contents_[row - firstContent_];
}

void ResultTableController::applyDiffableDataSourceSnapshotAnimated(bool, const ChangedRows& rows) {
    contents_.clear();
    if (rows) {
        logIf(processFlags.debugSearch, Debug, "Reloading changed rows of result table");
        table_.reloadRows(*rows);
    } else {
        logIf(processFlags.debugSearch, Debug, "Performing complete reload of result table");
        table_.reloadData();
    }
    if (reloaded_) reloaded_();
}

void ResultTableController::adjustWindowHeight() {
    if (!MainQueue::isMainThread()) logError("Method must be run on main thread!");
    GlobalState& state = GlobalState::sharedInstance();
    const bool maximized = state.maximized().value();
    const auto rows = static_cast<long>(numberOfRows());
    const double rowHeight = rows < 1 ? 0 : WindowGeometry::kRowHeight;
    const Rect screen = window_.screenFrame();
    const long limit = WindowGeometry::rowLimit(maximized, window_.visibleScreenFrame(), rowHeight);
    state.setMaxNumberOfRows(limit);
    table_.setHasVerticalScroller(rows > limit);
    Rect frame = window_.frame();
    if (maximized) frame.y = screen.y + screen.height - frame.height;
    const double height = WindowGeometry::heightForRows(std::min(rows, limit), rowHeight);
    window_.setFrame(WindowGeometry::withHeight(frame, height), true);
}
