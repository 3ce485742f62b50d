#include "modes/TRVSearchMode.h"

#include <algorithm>
#include <thread>

#include "core/state/GlobalState.h"
#include "index/scanProject.h"
#include "modes/framework/ModeHost.h"
#include "modes/rowText.h"
#include "platform/FileTypes.h"
#include "screen/ResultTableView.h"
#include "searchmodes/rankStringInSearchMode.h"
#include "searchmodes/rowComparison.h"
#include "util/Unicode.h"
#include "util/World.h"
#include "util/log.h"
#include "util/settings/OVUserDefaults.h"

namespace {

unsigned rankingThreads() {
    const unsigned processors = std::thread::hardware_concurrency();
    return processors > 1 ? processors - 1 : 1;
}

}  // namespace

TRVSearchMode::TRVSearchMode(const FileTypes& fileTypes)
    : TRVMode(kSearchMode),
      fileTypes_(fileTypes),
      caches_(*this, fileTypes),
      numberOfThreads_(rankingThreads()) {}

TRVSearchMode::~TRVSearchMode() {
    // The rows before the items that they are of; and these while they can still be reported.
    deleteFilteredItems();
    caches_.removeAll();
}

TRVSearchMode& TRVSearchMode::sharedInstance() {
    return World::current().shared<TRVSearchMode>();
}

// ---- Searching

RankRequest TRVSearchMode::makeRequest(const std::u16string& string) const {
    const OVUserDefaults& settings = OVUserDefaults::sharedInstance();
    RankRequest request;
    if (const auto project = currentProject()) {
        request.showFiles = (project->visibleItemType & 1) != 0;
        request.showDirectories = (project->visibleItemType & 2) != 0;
        request.filenameOnly = project->matchFilenameOnly;
        request.ignoreDiacritics = project->ignoreDiacritics;
    }
    request.searchString = request.ignoreDiacritics ? stringByRemovingDiacritics(string) : string;
    request.bundlesAsFiles = settings.boolForKey("treatBundlesAsFiles");
    request.processMetadata = processFlags.processMetadata;
    request.numberOfThreads = numberOfThreads_;
    request.limit = resultLimit(settings.integerForKey("maxResultsetSize"));
    request.abortSearch = &abortSearchFlag();
    return request;
}

void TRVSearchMode::searchForString(const std::u16string& string, const SearchFinalBlock& block) {
    const std::shared_ptr<Cache> cache = caches_.currentCache();
    if (!cache || isBlank(string)) {
        deleteFilteredItems();
        block(true, std::nullopt);
        return;
    }
    const RankRequest request = makeRequest(string);
    Outcome outcome = cache->performBlockReadOnly(
        [&](const ReadSection& section) { return search(section, cache, string, request); });
    block(outcome.valid, std::move(outcome.rows));
}

TRVSearchMode::Outcome TRVSearchMode::search(const ReadSection& section,
                                             const std::shared_ptr<Cache>& cache,
                                             const std::u16string& string,
                                             const RankRequest& request) {
    const bool stringChanged = string != lastSearchString_;
    lastSearchString_ = string;
    int64_t total = 0;
    std::optional<match_array_t> list = rankStringInSearchMode(section, *cache, request, total);
    if (!list) return {true, std::nullopt};
    if (abortSearch()) return {};
    for (const match_ptr& match : *list) match->fingerprint = fingerprintOf(*match);
    totalMatches_ = total;
    visibleMatches_ = static_cast<int64_t>(list->size());
    const auto [compared, hadRows] = filteredItemsAccessQueue_.read([&](const ReadSection&) {
        const bool otherCache = filteredCache_ != cache;
        return std::pair(
            compareRows(filtered_, *list, stringChanged, filteredCountChanged_ || otherCache),
            !filtered_.empty());
    });
    filteredCountChanged_ = false;
    logIf(processFlags.debugSearch, Debug,
          "Result set did change: %d; Old result set size: %lld; New result set size: %ld",
          compared.didChange, static_cast<long long>(filteredCount_),
          static_cast<long>(list->size()));
    const bool sameLength = list->size() == filteredCount_ && !list->empty();
    if (!hadRows || compared.didChange) {
        logIf(processFlags.debugSearch, Debug, "Updating filtered items");
        createFilteredItemsFromList(std::move(*list), cache);
    } else if (stringChanged) {
        logIf(processFlags.debugSearch, Debug,
              "Result did not change but search string did change; Keeping filtered items and "
              "updating match indicators");
        renewMatchIndicators(std::move(*list));
    }
    cache->resultListUpdated();
    Outcome outcome{compared.didChange || stringChanged, std::nullopt};
    if (sameLength && !compared.changedRows.empty()) outcome.rows = compared.changedRows;
    return outcome;
}

// ---- The rows

void TRVSearchMode::createFilteredItemsFromList(match_array_t list,
                                                const std::shared_ptr<Cache>& cache) {
    filteredItemsAccessQueue_.write([&](const WriteSection&) {
        filtered_.swap(list);
        rowsByItem_.clear();
        filteredCache_ = cache;
        filteredCount_ = filtered_.size();
    });
}

void TRVSearchMode::renewMatchIndicators(match_array_t list) {
    filteredItemsAccessQueue_.write([&](const WriteSection&) {
        for (size_t row = 0; row < filtered_.size(); row++) {
            filtered_[row]->matchedIndexes = std::move(list[row]->matchedIndexes);
            filtered_[row]->matchingCriterions = std::move(list[row]->matchingCriterions);
            filtered_[row]->updateMatchIndicators = true;
        }
    });
}

void TRVSearchMode::deleteFilteredItems() {
    match_array_t dropped;
    std::shared_ptr<Cache> cache;
    filteredItemsAccessQueue_.write([&](const WriteSection&) {
        filteredCount_ = 0;
        filtered_.swap(dropped);
        rowsByItem_.clear();
        cache.swap(filteredCache_);
    });
}

void TRVSearchMode::removeFilteredItem(const fs_item_t* item) {
    if (filteredCount_ == 0) return;
    filteredItemsAccessQueue_.write([&](const WriteSection&) {
        if (rowsByItem_.empty())
            for (size_t row = 0; row < filtered_.size(); row++)
                if (filtered_[row]) rowsByItem_[filtered_[row]->item] = row;
        const auto found = rowsByItem_.find(item);
        if (found == rowsByItem_.end()) return;
        filtered_[found->second].reset();
        rowsByItem_.erase(found);
        filteredCountChanged_ = true;
    });
}

void TRVSearchMode::consolidateFilteredList() {
    if (!filteredCountChanged_) return;
    filteredItemsAccessQueue_.write([&](const WriteSection&) {
        std::erase(filtered_, nullptr);
        rowsByItem_.clear();
        filteredCount_ = filtered_.size();
    });
}

void TRVSearchMode::readFilteredItems(FunctionRef<void(const match_array_t&)> block) {
    const auto cache =
        filteredItemsAccessQueue_.read([&](const ReadSection&) { return filteredCache_; });
    if (!cache) return;
    cache->performBlockReadOnly([&](const ReadSection&) {
        filteredItemsAccessQueue_.read([&](const ReadSection&) {
            if (filteredCache_ == cache) block(filtered_);
        });
    });
}

std::vector<RowContent> TRVSearchMode::rowContents(size_t first, size_t count) {
    std::vector<RowContent> rows;
    readFilteredItems([&](const match_array_t& matches) {
        for (size_t row = first; row < matches.size() && rows.size() < count; row++) {
            if (!matches[row]) continue;
            const match_t& match = *matches[row];
            const FileURL folder = fs_item_url(match.item, false);
            RowContent& content = rows.emplace_back(
                makeRowText(match.item->nameView(), folder.path(), match.matchedIndexes.items(),
                            match.indexesInFilename));
            content.iconName = fileTypes_.iconNameForItem(folder.appending(match.item->nameView()),
                                                          match.item->type);
            content.isLink = (match.item->type & ITEM_SYMLINK) != 0;
        }
    });
    return rows;
}

std::optional<FileURL> TRVSearchMode::urlOfFilteredItemAtIndex(size_t row) {
    std::optional<FileURL> url;
    readFilteredItems([&](const match_array_t& matches) {
        if (row < matches.size() && matches[row]) url = fs_item_url(matches[row]->item);
    });
    return url;
}

// ---- The selection

void TRVSearchMode::saveSelection() {
    if (restoreSelectionInProgress_) return;
    const std::vector<size_t> rows = host().resultTable().selectedRows();
    selection_ = {};
    if (rows.empty()) return;
    selection_.mostRecentlySelectedRow = rows.front();
    readFilteredItems([&](const match_array_t& matches) {
        for (const size_t row : rows)
            if (row < matches.size() && matches[row])
                selection_.inodes.push_back(matches[row]->item->inode);
    });
}

void TRVSearchMode::resultSetReloaded() {
    ResultTableView& table = host().resultTable();
    std::vector<size_t> rows;
    size_t count = 0;
    readFilteredItems([&](const match_array_t& matches) {
        count = matches.size();
        const auto& inodes = selection_.inodes;
        for (size_t row = 0; row < count && rows.size() < inodes.size(); row++)
            if (matches[row] && matches[row]->item->inode != 0 &&
                std::find(inodes.begin(), inodes.end(), matches[row]->item->inode) != inodes.end())
                rows.push_back(row);
    });
    if (count == 0 || searchString().empty()) return;
    if (rows.empty()) rows.push_back(std::min(selection_.mostRecentlySelectedRow, count - 1));
    restoreSelectionInProgress_ = true;
    for (size_t i = 0; i < rows.size(); i++) table.selectRow(rows[i], i > 0);
    table.scrollRowToVisible(rows.front());
    restoreSelectionInProgress_ = false;
}

// ---- Texts

std::string TRVSearchMode::searchFieldPlaceholderText() {
    const auto project = currentProject();
    if (!project) {
        if (projects_.empty()) return "No project configured";
        return hasEnabledProjects() ? "No project selected" : "All projects disabled";
    }
    if (project->folders().empty()) return "No folders configured for current project";
    const std::string name(FileURL(project->name).lastPathComponent());
    return "Search " + displayText(name) + (project->isVirtualProject() && name != "/" ? "/" : "");
}

std::string TRVSearchMode::infoString() {
    const auto project = currentProject();
    if (!project) return "No active project";
    std::string count;
    missingFolders_.clear();
    const auto cache = caches_.currentCache();
    if (cache && !searchString().empty()) {
        cache->performBlockReadOnly([&](const ReadSection& section) {
            for (const auto& folder : project->sorderFoldersAsc())
                if (!cache->existsFsItemWithPath(section, folder->url))
                    missingFolders_.push_back(folder->url);
        });
        count = " [" + std::to_string(visibleMatches_) + "/" + std::to_string(totalMatches_) +
                (missingFolders_.empty() ? "]" : "*]");
    }
    const bool scanning = scanInProgress_;
    return std::string(scanning ? "Indexing" : "Search") +
           (project->isVirtualProject() ? " directory " : " project ") +
           displayText(project->name) + (scanning ? "… " : "") + count;
}

std::string TRVSearchMode::infoTooltip() {
    if (missingFolders_.empty()) return {};
    std::string text = "Missing from cache:";
    for (const FileURL& folder : missingFolders_) text += "\n  • " + displayText(folder.path());
    return text;
}
