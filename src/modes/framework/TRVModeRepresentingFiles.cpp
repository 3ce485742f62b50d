#include "modes/framework/TRVModeRepresentingFiles.h"

#include "searchmodes/MetaDataSearch.h"
#include "searchmodes/RegexSearch.h"
#include "searchmodes/SearchTerms.h"
#include "util/World.h"

#include <algorithm>
#include <mutex>

#include "modes/framework/ModeHost.h"
#include "util/Unicode.h"
#include "util/log.h"
#include "util/queues/MainQueue.h"

namespace {

uint64_t pathHash(const FileURL& url) {
    return std::hash<FileURL>()(url);
}

std::string listOf(const std::vector<size_t>& rows) {
    std::string text;
    for (const size_t row : rows) text += (text.empty() ? "" : ", ") + std::to_string(row);
    return text;
}

}  // namespace

// ---- The paths of rows

std::optional<FileURL> TRVModeRepresentingFiles::urlOfFilteredItemAtIndex(size_t row) {
    const FilteredItem item = filteredItemAtIndex(static_cast<int64_t>(row));
    return item ? matchingItemToURL(*item) : std::nullopt;
}

std::vector<FileURL> TRVModeRepresentingFiles::urlsOfFilteredItemsAtIndexSet(
    const std::vector<size_t>& rows) {
    std::vector<FileURL> urls;
    for (const FilteredItem& item : filteredItemsAtIndexSet(rows))
        if (auto url = matchingItemToURL(*item)) urls.push_back(std::move(*url));
    return urls;
}

std::optional<FileURL> TRVModeRepresentingFiles::selectedURLOfFilteredItemAtIndex(size_t row) {
    const auto& saved = selection();
    if (saved && saved->pathSelection &&
        saved->mostRecentlySelectedRow == static_cast<int64_t>(row))
        return saved->pathSelection;
    return urlOfFilteredItemAtIndex(row);
}

std::vector<FileURL> TRVModeRepresentingFiles::selectedURLsOfFilteredItemsAtIndexSet(
    const std::vector<size_t>& rows) {
    const auto& saved = selection();
    if (saved && saved->pathSelection && !rows.empty()) {
        if (rows.size() > 1)
            logError("Multiple rows selected (%s) while pathSelection is set (%s)",
                     listOf(rows).c_str(), logText(saved->pathSelection->path()).c_str());
        if (saved->mostRecentlySelectedRow == static_cast<int64_t>(rows.front()))
            return {*saved->pathSelection};
    }
    return urlsOfFilteredItemsAtIndexSet(rows);
}

std::vector<FileURL> TRVModeRepresentingFiles::clickedOrSelectedURLs() {
    if (!MainQueue::isMainThread()) {
        std::vector<FileURL> urls;
        MainQueue::sync([&] {
            urls = selectedURLsOfFilteredItemsAtIndexSet(host().resultTable().selectedRows());
        });
        return urls;
    }
    const std::vector<size_t> rows = host().resultTable().selectedRows();
    const std::optional<size_t> clicked = host().resultTable().clickedRow();
    if (!clicked || std::find(rows.begin(), rows.end(), *clicked) != rows.end())
        return selectedURLsOfFilteredItemsAtIndexSet(rows);
    const auto url = selectedURLOfFilteredItemAtIndex(*clicked);
    return url ? std::vector<FileURL>{*url} : std::vector<FileURL>{};
}

std::vector<FileURL> selectedURLs(TRVMode* mode) {
    auto* const files = dynamic_cast<TRVModeRepresentingFiles*>(mode);
    return files ? files->clickedOrSelectedURLs() : std::vector<FileURL>();
}

void TRVModeRepresentingFiles::createFilteredItemsFromArray(std::vector<FilteredItem> items,
                                                            RowLookup lookup) {
    std::unordered_map<uint64_t, size_t> rows;
    if (lookup == RowLookup::byPath) {
        rows.reserve(items.size());
        for (size_t row = 0; row < items.size(); row++)
            if (const auto url = matchingItemToURL(*items[row])) rows[pathHash(*url)] = row;
    }
    std::lock_guard lock(rowIndexLock_);
    TRVMode::createFilteredItemsFromArray(std::move(items));
    rowIndexOfFilteredItemByPathHash_ = std::move(rows);
}

std::optional<size_t> TRVModeRepresentingFiles::rowIndexOfFilteredItemByURL(const FileURL& url) {
    std::shared_lock lock(rowIndexLock_);
    const auto found = rowIndexOfFilteredItemByPathHash_.find(pathHash(url));
    if (found == rowIndexOfFilteredItemByPathHash_.end()) return std::nullopt;
    return found->second;
}

void TRVModeRepresentingFiles::updateRowRepresentingURL(const FileURL& url) {
    if (const auto row = rowIndexOfFilteredItemByURL(url))
        host().applyDiffableDataSourceSnapshotAnimated(false, std::vector<size_t>{*row});
}

RankRequest TRVModeRepresentingFiles::makeFileRequest(const std::u16string& string,
                                                      bool ignoreDiacritics) {
    RankRequest request;
    request.ignoreDiacritics = ignoreDiacritics;
    request.searchString = ignoreDiacritics ? searchStringByRemovingDiacritics(string) : string;
    request.processMetadata = processFlags.processMetadata;
    request.abortSearch = &abortSearchFlag();
    request.makeRegexEngine = RegexSearch::maker(request.searchString, request.abortSearch);
    request.makeMetadataEngine =
        MetaDataSearch::engineMaker(request.searchString, World::current().clock().time());
    return request;
}

// ---- Coming and going

void TRVModeRepresentingFiles::resign() {
    if (renameState() != kNoRename) {
        host().resultTable().endEditingRow();
        setRenameState(kNoRename);
        host().enableSearchField();
    }
    TRVMode::resign();
}

// ---- The selection

void TRVModeRepresentingFiles::markPathForFutureSelection(const FileURL& url) {
    if (!selection()) selection() = Selection{};
    selection()->selectedItems = {url};
}

void TRVModeRepresentingFiles::saveSelection() {
    if (!MainQueue::isMainThread()) logError("Must be called on main thread!");
    if (!isActive()) logError("Must be active to save selection!");
    if (!selection() || !selection()->selectedItems.empty()) selection() = Selection{};
    ResultTableView& table = host().resultTable();
    const std::vector<size_t> rows = table.selectedRows();
    Selection& saved = *selection();
    if (!rows.empty()) saved.clearSelection = false;  // there is something to come back to
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

// ---- The trash

void TRVModeRepresentingFiles::deleteItems(const std::vector<FileURL>& urls) {
    if (!host().reallyTrashItems(urls)) return;
    if (auto& saved = selection()) saved->pathSelection.reset();
    host().moveToTrash(urls);
    saveSelectionByIndexOfSelectedRow();
    switchModeQueue().async([this] { host().reloadInBackgroundAnimated(true); });
}
