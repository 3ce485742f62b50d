#include "modes/framework/TRVModeRepresentingFiles.h"

#include <algorithm>

#include "modes/framework/ModeHost.h"
#include "screen/ResultTableView.h"
#include "util/log.h"
#include "util/queues/MainQueue.h"

std::vector<FileURL> TRVModeRepresentingFiles::urlsOfFilteredItemsAtIndexSet(
    const std::vector<size_t>& rows) {
    std::vector<FileURL> urls;
    for (const size_t row : rows)
        if (auto url = urlOfFilteredItemAtIndex(row)) urls.push_back(std::move(*url));
    return urls;
}

std::vector<FileURL> TRVModeRepresentingFiles::clickedOrSelectedURLs() {
    std::vector<size_t> rows;
    MainQueue::sync([&] { rows = host().resultTable().selectedRows(); });
    return urlsOfFilteredItemsAtIndexSet(rows);
}

void TRVModeRepresentingFiles::markPathForFutureSelection(const FileURL& url) {
    if (!selection()) selection() = Selection{};
    selection()->selectedItems = {url};
}

void TRVModeRepresentingFiles::updateRowRepresentingURL(const FileURL& url) {
    if (const auto row = rowIndexOfFilteredItemByURL(url))
        host().applyDiffableDataSourceSnapshotAnimated(false, std::vector<size_t>{*row});
}

void TRVModeRepresentingFiles::saveSelection() {
    if (!MainQueue::isMainThread()) logError("Must be called on main thread!");
    if (!isActive()) logError("Must be active to save selection!");
    if (!selection() || !selection()->selectedItems.empty()) selection() = Selection{};
    ResultTableView& table = host().resultTable();
    const std::vector<size_t> rows = table.selectedRows();
    Selection& saved = *selection();
    saved.clipOrigin = table.clipOrigin();
    const auto last = table.selectedRow();
    saved.mostRecentlySelectedRow = last ? static_cast<int64_t>(*last) : -1;
    saved.selectedRowIndexes = {rows.begin(), rows.end()};
    for (FileURL& url : urlsOfFilteredItemsAtIndexSet(rows))
        saved.selectedItems.emplace_back(std::move(url));
}

void TRVModeRepresentingFiles::restoreSelection() {
    std::vector<size_t> rows;
    if (selection())
        for (const Selection::Item& item : selection()->selectedItems)
            if (const auto* url = std::get_if<FileURL>(&item))
                if (const auto row = rowIndexOfFilteredItemByURL(*url)) rows.push_back(*row);
    std::sort(rows.begin(), rows.end());
    restoreSelectionWithIndexSet(std::move(rows));
}
