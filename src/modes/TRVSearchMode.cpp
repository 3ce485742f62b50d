#include "modes/TRVSearchMode.h"

#include <algorithm>
#include <thread>

#include "core/state/GlobalState.h"
#include "modes/TRVMarkedItemsMode.h"
#include "modes/framework/ModeHost.h"
#include "modes/framework/Notifications.h"
#include "modes/rowText.h"
#include "platform/FileTypes.h"
#include "searchmodes/MetaDataSearch.h"
#include "searchmodes/RegexSearch.h"
#include "searchmodes/SearchTerms.h"
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

TRVSearchMode::TRVSearchMode(const FileTypes& fileTypes, FileEvents& fileEvents,
                             TRVMarkedItemsMode& marks)
    : TRVModeSupportingPath(kSearchMode),
      fileTypes_(fileTypes),
      fileEvents_(fileEvents),
      marks_(marks),
      caches_(*this, fileTypes),
      streams_(fileEvents, [this](FileEventBatch batch) { liveIndex_.process(std::move(batch)); }),
      numberOfThreads_(rankingThreads()),
      liveIndex_(*this, marks, fileTypes) {
    projectSubscription_ = currentProject_.observe(
        [this](const auto& old, const auto& project) { currentProjectDidChange(old, project); });
    scanParameterSubscription_ = Notifications::sharedInstance().scanParameterModified.observe(
        [this](const auto& project) { scanParameterModified(project); });
}

TRVSearchMode::~TRVSearchMode() {
    // The rows before the items that they are of; and these while they can still be reported.
    deleteFilteredItems();
    caches_.removeAll();
}

TRVSearchMode& TRVSearchMode::sharedInstance() {
    return World::current().shared<TRVSearchMode>();
}

// ---- Searching

RankRequest TRVSearchMode::makeRequest(const std::u16string& string) {
    const OVUserDefaults& settings = OVUserDefaults::sharedInstance();
    RankRequest request;
    if (const auto project = currentProject()) {
        request.showFiles = (project->visibleItemType & 1) != 0;
        request.showDirectories = (project->visibleItemType & 2) != 0;
        request.filenameOnly = project->matchFilenameOnly;
        request.ignoreDiacritics = project->ignoreDiacritics;
    }
    request.searchString =
        request.ignoreDiacritics ? searchStringByRemovingDiacritics(string) : string;
    request.bundlesAsFiles = settings.boolForKey("treatBundlesAsFiles");
    request.processMetadata = processFlags.processMetadata;
    request.numberOfThreads = numberOfThreads_;
    request.limit = ignoreMaximumResultSetSize_.exchange(false)
                        ? kNoResultLimit
                        : resultLimit(settings.integerForKey("maxResultsetSize"));
    request.abortSearch = &abortSearchFlag();
    request.pathFilter = livePathFilter().copy();
    request.makeRegexEngine = RegexSearch::maker(request.searchString, request.abortSearch);
    // Also while metadata is not read: its terms count, though they test nothing then.
    request.makeMetadataEngine =
        MetaDataSearch::engineMaker(request.searchString, World::current().clock().time());
    return request;
}

void TRVSearchMode::searchForString(const std::u16string& string, const SearchFinalBlock& block) {
    if (renameState() != 0) {
        block(false, std::nullopt);
        return;
    }
    const std::shared_ptr<Cache> cache = caches_.currentCache();
    if (!cache || !currentProject() || isBlank(string)) {
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
    noteMissingFolders(section, *cache);
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
    std::shared_ptr<Cache> old = cache;
    filteredItemsAccessQueue_.write([&](const WriteSection&) {
        filtered_.swap(list);
        rowsByItem_.reset();
        filteredCache_.swap(old);
        filteredCount_ = filtered_.size();
    });
    list.clear();  // before the items that it is of
    caches_.dropLater(std::move(old));
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
        rowsByItem_.reset();
        cache.swap(filteredCache_);
    });
    dropped.clear();  // before the items that it is of
    caches_.dropLater(std::move(cache));
}

void TRVSearchMode::removeFilteredItem(const fs_item_t* item) {
    if (filteredCount_ == 0) return;
    filteredItemsAccessQueue_.write([&](const WriteSection&) {
        if (!rowsByItem_) {
            rowsByItem_.emplace();
            for (size_t row = 0; row < filtered_.size(); row++)
                if (filtered_[row]) (*rowsByItem_)[filtered_[row]->item] = row;
        }
        const auto found = rowsByItem_->find(item);
        if (found == rowsByItem_->end()) return;
        filtered_[found->second].reset();
        rowsByItem_->erase(found);
        filteredCountChanged_ = true;
        hasEmptiedRows_ = true;
    });
}

bool TRVSearchMode::hasMarkedPaths() {
    return marks_.hasMarkedPaths();
}

void TRVSearchMode::updatePathCachesAfterRemovePath(const FileURL& url) {
    marks_.updatePathCachesAfterRemovePath(url);
}

void TRVSearchMode::updatePathCachesAfterRename(const FileURL& from, const FileURL& to) {
    marks_.updatePathCachesAfterRename(from, to);
}

void TRVSearchMode::consolidateFilteredList() {
    marks_.storeRemovedPaths();
    if (!hasEmptiedRows_.exchange(false)) return;
    filteredItemsAccessQueue_.write([&](const WriteSection&) {
        std::erase(filtered_, nullptr);
        rowsByItem_.reset();
        filteredCount_ = filtered_.size();
    });
    showConsolidatedList();
}

void TRVSearchMode::showConsolidatedList() {
    // At once: until then a row on screen is another one of the list.
    if (isShowingConsolidatedList_.exchange(true)) return;
    MainQueue::async([this] {
        isShowingConsolidatedList_ = false;
        if (!isActive()) return;
        host().applyDiffableDataSourceSnapshotAnimated(false, std::nullopt);
        host().adjustWindowHeight();
        resultSetReloaded();
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

namespace {

/// What a row's lines are made of, outside the section.
struct Attributes {
    std::optional<fs_item_metadata> metadata = {};
    std::optional<IndexSet> criterions = {};

    explicit Attributes(const match_t& match) {
        if (!match.item->metadata) return;
        metadata = *match.item->metadata;
        criterions = match.matchingCriterions;
    }
    std::vector<RowLine> lines(const AttributeDisplay& display) const {
        if (!metadata) return {};
        return attributeLines(*metadata, display, criterions ? &*criterions : nullptr);
    }
};

}  // namespace

std::vector<RowContent> TRVSearchMode::rowContents(size_t first, size_t count) {
    std::vector<RowContent> rows;
    std::vector<Attributes> attributes;
    const auto display = attributeDisplay();
    readFilteredItems([&](const match_array_t& matches) {
        for (size_t row = first; row < matches.size() && rows.size() < count; row++) {
            if (!matches[row]) continue;
            const match_t& match = *matches[row];
            const FileURL folder = fs_item_url(match.item, false);
            const FileURL url = folder.appending(match.item->nameView());
            RowContent& content = rows.emplace_back(
                makeRowText(match.item->nameView(), folder.path(), match.matchedIndexes.items(),
                            match.indexesInFilename));
            content.iconName = fileTypes_.iconNameForItem(url, match.item->type);
            if (display) attributes.emplace_back(match);
            content.isLink = (match.item->type & ITEM_SYMLINK) != 0;
            if (content.isLink) content.linkPath = url.path();
            decorate(content, row, url);
        }
    });
    for (size_t i = 0; i < attributes.size(); i++)
        rows[i].attributes = attributes[i].lines(*display);
    return rows;
}

std::optional<FileURL> TRVSearchMode::urlOfFilteredItemAtIndex(size_t row) {
    std::optional<FileURL> url;
    readFilteredItems([&](const match_array_t& matches) {
        if (row < matches.size() && matches[row]) url = fs_item_url(matches[row]->item);
    });
    return url;
}

std::vector<FileURL> TRVSearchMode::urlsOfFilteredItemsAtIndexSet(const std::vector<size_t>& rows) {
    std::vector<FileURL> urls;
    readFilteredItems([&](const match_array_t& matches) {
        for (const size_t row : rows)
            if (row < matches.size() && matches[row])
                urls.push_back(fs_item_url(matches[row]->item));
    });
    return urls;
}

std::optional<size_t> TRVSearchMode::rowIndexOfFilteredItemByURL(const FileURL& url) {
    std::optional<size_t> found;
    readFilteredItems([&](const match_array_t& matches) {
        for (size_t row = 0; row < matches.size() && !found; row++)
            if (matches[row] && matches[row]->item->nameView() == url.lastPathComponent() &&
                fs_item_url(matches[row]->item) == url)
                found = row;
    });
    return found;
}
