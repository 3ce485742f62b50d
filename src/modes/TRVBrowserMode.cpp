#include "modes/TRVBrowserMode.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "index/FSScanner.h"
#include "modes/fileRows.h"
#include "modes/framework/FileMatcher.h"
#include "modes/framework/ModeHost.h"
#include "shell/registry/shortcutText.h"
#include "util/FileIO.h"
#include "util/Unicode.h"
#include "util/World.h"
#include "util/settings/OVUserDefaults.h"

// What a folder holds, as rows.

namespace {

constexpr Hues kColours{0.751};

/// Names in the order of a reader: without regard to case.
struct Ordered {
    std::shared_ptr<MatchingBrowserItem> item;
    std::u16string name;
};

bool precedes(const Ordered& a, const Ordered& b) {
    if (a.item->score != b.item->score) return a.item->score > b.item->score;
    if (a.name != b.name) return a.name < b.name;
    return a.item->url < b.item->url;
}

}  // namespace

TRVBrowserMode::TRVBrowserMode(const Parts& parts)
    : TRVModeRepresentingFiles(kBrowserMode), parts_(parts), currentDirectoryURL_(parts.home) {
    directorySubscription_ =
        currentDirectoryURL_.observe([this](const FileURL& old, const FileURL& now) {
            if (old != now) directoryDidChange(old, now);
        });
}

TRVBrowserMode::~TRVBrowserMode() {
    eventStream_.reset();
}

TRVBrowserMode& TRVBrowserMode::sharedInstance() {
    return World::current().shared<TRVBrowserMode>();
}

// ---- Coming and going

void TRVBrowserMode::activate() {
    TRVModeRepresentingFiles::activate();
    // The folder on show from the start has no stream before anybody looks at it.
    if (!eventStream_ && !currentDirectoryURL().empty())
        directoryDidChange({}, currentDirectoryURL());
}

void TRVBrowserMode::resign() {
    abortScan_ = true;
    TRVModeRepresentingFiles::resign();
}

void TRVBrowserMode::themeChanged() {
    const bool dark = host().isDark();
    setColours(kColours.background(dark), kColours.oddRow(dark), kColours.evenRow(dark));
    setupTextAttrsForColor(backgroundColor());
}

std::string TRVBrowserMode::infoString() {
    return "Browse " + displayText(currentDirectoryURL().path());
}

std::string TRVBrowserMode::searchFieldPlaceholderText() {
    const std::vector<size_t> rows = host().resultTable().selectedRows();
    if (rows.size() != 1) return "Browse (⌘↑ parent)";
    const auto item = filteredItemAtIndex(static_cast<int64_t>(rows.front()));
    const auto* file = dynamic_cast<const MatchingBrowserItem*>(item.get());
    if (!file || !(file->itemType & ITEM_DIRECTORY)) return "Browse ⌘↑ parent";
    return "Browse (⌘↓ peek ⌘↑ parent " + stringRepresentationFor("SearchSelection") + " search)";
}

// ---- Searching

void TRVBrowserMode::readDirectory() {
    const FileURL folder = currentDirectoryURL();
    if (!contentIsOld_.exchange(false) && folder == directoryOfContent_) return;
    MainQueue::async([this] {
        if (isActive()) host().startScanAnimation();
    });
    const OVUserDefaults& settings = OVUserDefaults::sharedInstance();
    const auto mask =
        static_cast<uint8_t>(settings.integerForKey("browserVisibleItemTypes") & 0xFF);
    directoryContent_ = FSScanner::subdirectoriesOfPath(
        folder,
        {.hideDotFiles = dirSearchHidesDotFiles_,
         .visibleItemTypes = mask,
         .treatBundlesAsFiles = settings.boolForKey("treatBundlesAsFiles")},
        parts_.fileTypes, abortScan_);
    directoryOfContent_ = folder;
    if (abortScan_) contentIsOld_ = true;  // a part of it
    if (directoryContent_.empty()) tellIfUnreadable(folder);
    MainQueue::async([this] {
        if (isActive()) host().stopScanAnimation();
    });
}

void TRVBrowserMode::tellIfUnreadable(const FileURL& folder) {
    if (!isActive()) return;
    if (!FileHandle(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)))
        host().error(std::strerror(errno));
}

void TRVBrowserMode::searchForString(const std::u16string& string, const SearchFinalBlock& block) {
    if (renameState() != kNoRename) {
        block(false, std::nullopt);
        return;
    }
    if (currentDirectoryURL().empty()) {
        block(true, std::nullopt);
        return;
    }
    readDirectory();
    RankRequest request = makeFileRequest(
        string, OVUserDefaults::sharedInstance().boolForKey("browserIgnoreDiacritics"));
    request.filenameOnly = true;
    FileMatcher matcher(request);
    std::vector<Ordered> found;
    for (const std::string& name : directoryContent_) {
        if (abortSearch()) break;
        auto item = std::make_shared<MatchingBrowserItem>();
        FileURL url = directoryOfContent_.appending(name);
        if (!matcher.match(url, *item, FileMatcher::Presence::required)) continue;
        item->url = std::move(url);
        found.push_back({std::move(item), lowerCasedUnits(ruleText(name))});
    }
    std::sort(found.begin(), found.end(), precedes);
    std::vector<FilteredItem> items;
    items.reserve(found.size());
    for (Ordered& each : found) items.push_back(std::move(each.item));
    createFilteredItemsFromArray(std::move(items), RowLookup::byPath);
    block(true, std::nullopt);
}

std::optional<FileURL> TRVBrowserMode::matchingItemToURL(const MatchingItem& item) {
    const auto* file = dynamic_cast<const MatchingBrowserItem*>(&item);
    return file ? std::optional(file->url) : std::nullopt;
}

std::vector<RowContent> TRVBrowserMode::rowContents(size_t first, size_t count) {
    std::vector<RowContent> rows;
    for (size_t row = first; row < first + count; row++) {
        const FilteredItem found = filteredItemAtIndex(static_cast<int64_t>(row));
        const auto* item = dynamic_cast<const MatchingBrowserItem*>(found.get());
        if (!item) break;
        RowContent& content =
            rows.emplace_back(makeFileRow(*item, item->url, true, parts_.fileTypes));
        content.path.clear();  // the same for all
        content.isMarked = host().isMarked(item->url);
        content.source = host().sourceOf(item->url);
    }
    return rows;
}

void TRVBrowserMode::resultSetReloaded() {
    if (selection())
        restoreSelection();
    else if (urlOfFilteredItemAtIndex(0)) {
        host().resultTable().selectRow(0, false);
        host().resultTable().scrollRowToVisible(0);
    }
    host().updateTextsOfCurrentMode();
}
