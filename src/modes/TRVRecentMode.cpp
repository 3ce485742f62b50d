#include "modes/TRVRecentMode.h"

#include <algorithm>

#include "modes/TRVSearchMode.h"
#include "modes/fileRows.h"
#include "modes/framework/FileSorter.h"
#include "modes/framework/ModeHost.h"
#include "screen/Alerts.h"
#include "util/World.h"
#include "util/settings/OVUserDefaults.h"

namespace {

constexpr Hues kColours{0.33};
enum DeleteAnswer : size_t { kMoveToTrash, kRemoveFromRecentItems };

bool isNewer(const MatchingRecentItem& a, const MatchingRecentItem& b) {
    return a.timestamp > b.timestamp;
}

}  // namespace

TRVRecentMode& TRVRecentMode::sharedInstance() {
    return World::current().shared<TRVRecentMode>();
}

void TRVRecentMode::activate() {
    TRVModeSupportingPath::activate();
    if (!searchMode_.hasProjects() && editProjects_) editProjects_();
}

void TRVRecentMode::searchWindowDidOpen() {
    host().reloadInBackgroundAnimated(false);
}

void TRVRecentMode::themeChanged() {
    setColours(kColours.background(host().isDark()), kColours.oddRow(host().isDark()),
               kColours.evenRow(host().isDark()));
    setupTextAttrsForColor(backgroundColor());
}

// ---- Texts

std::string TRVRecentMode::searchFieldPlaceholderText() {
    return recentItems().empty() ? "No recent items" : "Search recent items";
}

std::string TRVRecentMode::infoString() {
    const auto project = searchMode_.currentProject();
    return "Recent items in project " + (project ? nameOfProject(*project) : std::string());
}

std::string TRVRecentMode::ageText(std::time_t timestamp, std::time_t now) {
    constexpr std::time_t kMinute = 60, kHour = 60 * kMinute, kDay = 24 * kHour;
    const std::time_t age = std::max<std::time_t>(now - timestamp, 0);
    std::time_t number = age / kMinute;
    const char* unit = "m";
    if (age >= kDay) {
        number = age / kDay;
        unit = "d";
    } else if (age >= kHour) {
        number = age / kHour;
        unit = "h";
    }
    return " (" + std::to_string(number) + unit + " ago)";
}

// ---- Searching

std::vector<RecentItem> TRVRecentMode::recentItems() const {
    const auto cache = searchMode_.sharedCurrentCache();
    return cache ? cache->recentItems() : std::vector<RecentItem>();
}

void TRVRecentMode::searchForString(const std::u16string& string, const SearchFinalBlock& block) {
    if (renameState() != kNoRename) {
        block(false, std::nullopt);
        return;
    }
    const OVUserDefaults& settings = OVUserDefaults::sharedInstance();
    const auto mask = static_cast<uint8_t>(settings.integerForKey("recentItemsVisibleItemTypes"));
    const auto project = searchMode_.currentProject();
    // Kept: the project's setting counts, not recentItemsIgnoreDiacritics.
    RankRequest request = makeFileRequest(string, project && project->ignoreDiacritics);
    request.filenameOnly = settings.boolForKey("recentItemsMatchFilenameOnly");
    FileMatcher matcher(request);
    std::vector<std::shared_ptr<MatchingRecentItem>> found;
    for (const RecentItem& record : recentItems()) {
        if (abortSearch()) {
            block(false, std::nullopt);
            return;
        }
        if (!(record.type & mask)) continue;
        auto item = std::make_shared<MatchingRecentItem>();
        if (!matcher.match(record.url, *item, FileMatcher::Presence::optional)) continue;
        item->url = record.url;
        item->inode = record.inode;
        item->timestamp = record.timestamp;
        item->change = record.change;
        item->matchFilenameOnly = request.filenameOnly;
        if (item->itemType == 0) item->itemType = record.type;
        found.push_back(std::move(item));
    }
    if (matcher.matchesEverything())
        std::stable_sort(found.begin(), found.end(),
                         [](const auto& a, const auto& b) { return isNewer(*a, *b); });
    else
        sortFileItems(found, matcher);
    createFilteredItemsFromArray({found.begin(), found.end()}, RowLookup::byPath);
    block(true, std::nullopt);
}

std::optional<FileURL> TRVRecentMode::matchingItemToURL(const MatchingItem& item) {
    const auto* recent = dynamic_cast<const MatchingRecentItem*>(&item);
    return recent ? std::optional(recent->url) : std::nullopt;
}

std::vector<RowContent> TRVRecentMode::rowContents(size_t first, size_t count) {
    const std::time_t now = std::time(nullptr);
    const auto display = attributeDisplay();
    std::vector<RowContent> rows;
    for (const FilteredItem& found : filteredItemsFrom(first, count)) {
        const auto* item = dynamic_cast<const MatchingRecentItem*>(found.get());
        if (!item) break;
        const size_t row = first + rows.size();
        RowContent& content = rows.emplace_back(
            makeFileRow(*item, item->url, item->matchFilenameOnly, fileTypes_, display));
        decorate(content, row, item->url);
        const std::string age = ageText(item->timestamp, now);
        content.name += age;
        content.nameSuffix = age.size();
    }
    return rows;
}

// ---- Deleting

void TRVRecentMode::deleteItems(const std::vector<FileURL>& urls) {
    if (urls.empty()) return;
    const size_t answer = host().askPreventingHiding(
        {.title = "Move " + quotedItems(urls) + " to Trash",
         .text = trashQuestion(urls),
         .buttons = {"Move to Trash", "Remove from Recent Items", "Cancel"},
         .buttonOfSpace = kRemoveFromRecentItems});
    if (answer == kMoveToTrash) host().moveToTrash(urls);
    if (answer != kRemoveFromRecentItems) return;
    if (const auto cache = searchMode_.sharedCurrentCache())
        for (const FileURL& url : urls) cache->removeRecentItemsBelowURL(url);
    saveSelectionByIndexOfSelectedRow();
    host().reloadInBackgroundAnimated(true);
}
