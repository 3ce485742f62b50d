#include <sys/stat.h>

#include <algorithm>

#include "modes/TRVSearchMode.h"
#include "modes/framework/ModeHost.h"
#include "screen/Alerts.h"
#include "screen/ResultTableView.h"
#include "util/log.h"
#include "util/queues/MainQueue.h"
#include "util/settings/OVUserDefaults.h"

// What is selected in Search mode: kept by inode, so that it stays with its file under another
// name.

namespace {
constexpr int64_t kManyMatches = 10'001;  // to show them all takes its time: the user is asked
constexpr Colour kDarkBackground{0.585, 0.26, 0.125}, kLightBackground{0.585, 0.015, 0.985};
constexpr Colour kDarkOddRow{0.585, 0.26, 0.14}, kLightRow{0, 0, 1};
}  // namespace

// ---- Coming and going

void TRVSearchMode::activate() {
    TRVModeSupportingPath::activate();
    FSScanner::sharedInstance().setSearchModeActive(true);
    if (isScanning()) host().startScanAnimation();
    deleteFilteredItems();
    if (!lastSearchWasSlow()) return;
    host().applyDiffableDataSourceSnapshotAnimated(false, std::nullopt);
    host().adjustWindowHeight();
}

void TRVSearchMode::resign() {
    TRVModeSupportingPath::resign();
    FSScanner::sharedInstance().setSearchModeActive(false);
}

void TRVSearchMode::themeChanged() {
    if (host().isDark())
        setColours(kDarkBackground, kDarkOddRow, kDarkBackground);
    else
        setColours(kLightBackground, kLightRow, kLightRow);
    setupTextAttrsForColor(backgroundColor());
}

// ---- The selection

void TRVSearchMode::saveSelection() {
    if (!MainQueue::isMainThread()) logError("Must be called on main thread!");
    if (!isActive()) logError("Must be active to save selection!");
    ResultTableView& table = host().resultTable();
    const std::vector<size_t> rows = table.selectedRows();
    Selection saved;
    saved.clipOrigin = table.clipOrigin();
    const auto last = table.selectedRow();
    saved.mostRecentlySelectedRow = last ? static_cast<int64_t>(*last) : -1;
    saved.selectedRowIndexes = {rows.begin(), rows.end()};
    readFilteredItems([&](const match_array_t& matches) {
        for (const size_t row : rows)
            if (row < matches.size() && matches[row])
                saved.selectedItems.emplace_back(matches[row]->item->inode);
    });
    saved.pathSelection = keptPathSelection(rows);
    selection() = std::move(saved);
}

void TRVSearchMode::restoreSelection() {
    std::vector<size_t> rows;
    std::vector<uint64_t> inodes;
    if (selection())
        for (const Selection::Item& item : selection()->selectedItems)
            if (const auto* inode = std::get_if<uint64_t>(&item)) inodes.push_back(*inode);
    const size_t count = host().numberOfRows();
    if (!inodes.empty())
        readFilteredItems([&](const match_array_t& matches) {
            const size_t end = std::min(count, matches.size());
            for (size_t row = 0; row < end && rows.size() < inodes.size(); row++) {
                if (!matches[row]) continue;
                const uint64_t inode = matches[row]->item->inode;
                if (inode != 0 && std::find(inodes.begin(), inodes.end(), inode) != inodes.end())
                    rows.push_back(row);
            }
        });
    restoreSelectionWithIndexSet(std::move(rows));
}

void TRVSearchMode::resultSetReloaded() {
    if (!selection() && !urlOfFilteredItemAtIndex(0)) return;
    TRVModeSupportingPath::resultSetReloaded();
}

void TRVSearchMode::markPathForFutureSelection(const FileURL& url) {
    struct stat info;
    if (lstat(url.c_str(), &info) != 0) return;
    if (!selection()) selection() = Selection{};
    selection()->selectedItems = {static_cast<uint64_t>(info.st_ino)};
}

// ---- Keys

KeyboardShortcutEntries TRVSearchMode::keyboardShortcutsIncludingSuperclass(bool) const {
    return KeyboardShortcuts::sharedInstance().sections({"Paths", "Quick Filter", "Search Mode"});
}

bool TRVSearchMode::handleEvent(const KeyEvent& event) {
    constexpr uint64_t kCommandArrow = kModifierCommand | kModifierNumericPad | kModifierFunction;
    if (TRVModeSupportingPath::handleEvent(event)) return true;
    return event.keyCode == kKeyUp && maskedModifierFlags(event.modifierFlags) == kCommandArrow &&
           browseToParentOfVirtualProject();
}

void TRVSearchMode::toggleIgnoreMaximumResultSetSize() {
    const auto rows = static_cast<int64_t>(host().numberOfRows());
    const int64_t total = totalMatches_;
    if (total >= kManyMatches && rows != total) {
        const auto limit = OVUserDefaults::sharedInstance().integerForKey("maxResultsetSize");
        const Alert alert{
            .title = "Performance warning",
            .text = "Your query matches " + std::to_string(total) +
                    " items. Showing them all in the result table will take some time.",
            .buttons = {"Show All", "Keep showing " + std::to_string(limit) + " items"},
            .buttonOfEscape = 1};
        if (host().askPreventingHiding(alert) == 1) return;
    }
    ignoreMaximumResultSetSize_ = rows != total;
    host().reloadInBackgroundAnimated(false);
}
