#include "modes/framework/TRVMode.h"

#include <algorithm>
#include <numeric>

#include "modes/framework/ModeHost.h"
#include "modes/framework/modeLook.h"
#include "screen/ResultTableView.h"
#include "shell/registry/KeyboardShortcuts.h"
#include "util/ProcessFlags.h"
#include "util/World.h"
#include "util/log.h"
#include "util/settings/OVUserDefaults.h"

namespace {

struct SwitchModeQueue {
    SerialQueue queue{"Switch Mode Queue", Qos::userInteractive};
};

void checkMainThread() {
    if (!MainQueue::isMainThread()) logError("Must be called on main thread!");
}

}  // namespace

SerialQueue& TRVMode::switchModeQueue() {
    return World::current().shared<SwitchModeQueue>().queue;
}

bool TRVMode::isActive() const {
    return host_ && host_->currentMode() == this;
}

void TRVMode::activate() {
    checkMainThread();
    if (!lastSearchWasSlow_) return;
    // The old result at once instead of the new one after a slow search.
    host_->applyDiffableDataSourceSnapshotAnimated(false, std::nullopt);
    host_->adjustWindowHeight();
    resultSetReloaded();
}

void TRVMode::resign() {
    checkMainThread();
    host_->stopSearchAnimation();
    host_->stopScanAnimation();
}

void TRVMode::setColours(Colour background, Colour oddRow, Colour evenRow) {
    backgroundColor_ = background;
    look_.oddRow = oddRow;
    look_.evenRow = evenRow;
}

void TRVMode::setupTextAttrsForColor(Colour colour) {
    look_.isDark = host_->isDark();
    look_.background = backgroundColor_;
    setupTextAttrs(look_, colour.hue, backgroundColor_.hue);
}

// ---- The lines below name and path

std::optional<AttributeDisplay> TRVMode::attributeDisplay() const {
    if (!processFlags.processMetadata) return std::nullopt;
    return AttributeDisplay{OVUserDefaults::sharedInstance().integerForKey("showMetadata"),
                            visibleAttributes_};
}

void TRVMode::updateNumberOfAdditionalRows() {
    const auto display = attributeDisplay();
    numberOfAdditionalRows_ = display ? requiredNumberOfRows(identifier_, *display) : 0;
}

// ---- The filtered items

void TRVMode::createFilteredItemsFromArray(std::vector<FilteredItem> items) {
    filteredItemsAccessQueue_.write([&](const WriteSection& section) {
        deleteFilteredItems(section);
        filtered_.swap(items);
        filteredCount_ = filtered_.size();
    });
}

void TRVMode::deleteFilteredItems(const WriteSection&) {
    filteredCount_ = 0;
    filtered_.clear();
}

TRVMode::FilteredItem TRVMode::filteredItemAtIndex(int64_t index) {
    return filteredItemsAccessQueue_.read([&](const ReadSection&) -> FilteredItem {
        if (index < 0 || static_cast<uint64_t>(index) >= filtered_.size()) return nullptr;
        return filtered_[static_cast<size_t>(index)];
    });
}

std::vector<TRVMode::FilteredItem> TRVMode::filteredItemsAtIndexSet(
    const std::vector<size_t>& rows) {
    return filteredItemsAccessQueue_.read([&](const ReadSection&) {
        std::vector<FilteredItem> items;
        for (const size_t row : rows)
            if (row < filtered_.size()) items.push_back(filtered_[row]);
        return items;
    });
}

std::vector<TRVMode::FilteredItem> TRVMode::filteredItemsFrom(size_t first, size_t count) {
    std::vector<size_t> rows(count);
    std::iota(rows.begin(), rows.end(), first);
    return TRVMode::filteredItemsAtIndexSet(rows);
}

// ---- The selection

void TRVMode::resultSetReloaded() {
    if (selection_) {
        restoreSelection();
        return;
    }
    if (host_->numberOfRows() == 0) return;
    ResultTableView& table = host_->resultTable();
    table.selectRow(0, false);
    table.scrollRowToVisible(0);
    // The row may have been selected before: then nobody has told of a change.
    if (!selection_) saveSelection();
}

void TRVMode::saveSelectionByIndexOfSelectedRow() {
    const std::vector<size_t> rows = host_->resultTable().selectedRows();
    selection_ = Selection{};
    selection_->mostRecentlySelectedRow = rows.empty() ? -1 : static_cast<int64_t>(rows.front());
}

void TRVMode::restoreSelectionWithIndexSet(std::vector<size_t> rows) {
    restoreSelectionInProgress_ = true;
    ResultTableView& table = host_->resultTable();
    const auto count = static_cast<int64_t>(host_->numberOfRows());
    const bool clear = selection_ && selection_->clearSelection;
    bool restoresScrollPosition = true;
    if (rows.empty() && count > 0) {
        if (clear) {
            logIf(processFlags.debugSelection, Debug,
                  "    None of the previously selected indexes exist anymore. Deselecting.");
            table.deselectAll();
        } else {
            restoresScrollPosition = false;
            int64_t row = selection_ ? selection_->mostRecentlySelectedRow : 0;
            if (row < 0) {  // nothing was selected, by the user's own doing
                restoreSelectionInProgress_ = false;
                return;
            }
            logIf(processFlags.debugSelection, Debug,
                  "    None of the previously selected indexes exist anymore. Using "
                  "mostRecentlySelectedRow %ld instead; Will also ignore scroll position.",
                  static_cast<long>(row));
            row = std::clamp<int64_t>(row, 0, count - 1);
            if (selection_) selection_->mostRecentlySelectedRow = row;
            rows = {static_cast<size_t>(row)};
        }
    }
    for (size_t i = 0; i < rows.size(); i++) table.selectRow(rows[i], i > 0);
    scrollTo(rows, restoresScrollPosition);
    restoreSelectionInProgress_ = false;
}

void TRVMode::scrollTo(const std::vector<size_t>& rows, bool restoresScrollPosition) {
    ResultTableView& table = host_->resultTable();
    if (host_->numberOfRows() <= host_->maxNumberOfRows())
        table.scrollRowToVisible(0);
    else if (!rows.empty())
        MainQueue::async([&table, row = rows.front()] { table.scrollRowToVisible(row); });
    if (restoresScrollPosition && selection_ && selection_->clipOrigin.y != 0)
        MainQueue::async(
            [&table, origin = selection_->clipOrigin] { table.setClipOrigin(origin); });
}

// ---- Keys

bool TRVMode::handleEvent(const KeyEvent& event) {
    const auto processed =
        KeyboardShortcuts::process(keyboardShortcutsIncludingSuperclass(true), event, identifier_);
    return processed && processed->result;
}

// ---- The search text

std::u16string TRVMode::searchString() const {
    std::lock_guard lock(searchStringMutex_);
    return searchString_.value_or(std::u16string());
}

bool TRVMode::hasSearchString() const {
    std::lock_guard lock(searchStringMutex_);
    return searchString_.has_value();
}

void TRVMode::setSearchString(std::u16string string) {
    std::lock_guard lock(searchStringMutex_);
    searchString_ = std::move(string);
}
