#include "modes/TRVBrowserMode.h"

#include <fcntl.h>

#include <cerrno>
#include <cstring>

#include "index/DirectoryOnDisk.h"
#include "index/FSScanner.h"
#include "modes/fileRows.h"
#include "modes/framework/ModeHost.h"
#include "shell/registry/shortcutText.h"
#include "util/FileIO.h"
#include "util/Unicode.h"
#include "util/World.h"
#include "util/settings/OVUserDefaults.h"

// What a folder holds, as rows.

namespace {

constexpr Hues kColours{0.751};

/// Events come with the paths that the disk has.
TRVBrowserMode::Parts withRealHome(TRVBrowserMode::Parts parts) {
    parts.home = realPath(parts.home).value_or(parts.home);
    return parts;
}

}  // namespace

TRVBrowserMode::TRVBrowserMode(const Parts& parts)
    : TRVModeRepresentingFiles(kBrowserMode),
      parts_(withRealHome(parts)),
      currentDirectoryURL_(parts_.home) {
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
    const std::string parent = shortcutText(kKeyUp, kModifierCommand) + " parent";
    const std::vector<size_t> rows = host().resultTable().selectedRows();
    if (rows.size() != 1) return "Browse (" + parent + ")";
    const auto item = filteredItemAtIndex(static_cast<int64_t>(rows.front()));
    const auto* file = dynamic_cast<const MatchingBrowserItem*>(item.get());
    if (!file || !(file->itemType & ITEM_DIRECTORY)) return "Browse " + parent;
    return "Browse (" + shortcutText(kKeyDown, kModifierCommand) + " peek " + parent + " " +
           stringRepresentationFor("SearchSelection") + " search)";
}

// ---- Searching

void TRVBrowserMode::readDirectory(BrowserFolder::Diacritics diacritics) {
    const FileURL folder = currentDirectoryURL();
    const bool isOld = contentIsOld_.exchange(false);
    if (!isOld && directoryContent_ && folder == directoryContent_->url() &&
        directoryContent_->diacritics() == diacritics)
        return;
    MainQueue::async([this] {
        if (isActive()) host().startScanAnimation();
    });
    const OVUserDefaults& settings = OVUserDefaults::sharedInstance();
    const auto mask =
        static_cast<uint8_t>(settings.integerForKey("browserVisibleItemTypes") & 0xFF);
    directoryContent_ = std::make_shared<const BrowserFolder>(
        folder,
        FSScanner::subdirectoriesOfPath(
            folder,
            {.hideDotFiles = dirSearchHidesDotFiles_,
             .visibleItemTypes = mask,
             .treatBundlesAsFiles = settings.boolForKey("treatBundlesAsFiles")},
            parts_.fileTypes, abortScan_),
        diacritics);
    if (abortScan_) contentIsOld_ = true;  // a part of it
    if (directoryContent_->count() == 0) tellIfUnreadable(folder);
    MainQueue::async([this] {
        if (isActive()) host().stopScanAnimation();
    });
}

void TRVBrowserMode::tellIfUnreadable(const FileURL& folder) {
    if (!isActive() || FileHandle(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)))
        return;
    const int error = errno;
    host().error(std::strerror(error));
    if (error == ENOENT || error == ENOTDIR) leaveVanished(folder);
}

void TRVBrowserMode::searchForString(const std::u16string& string, const SearchFinalBlock& block) {
    if (currentDirectoryURL().empty()) {
        block(true, std::nullopt);
        return;
    }
    if (renameState() != kNoRename) {
        block(false, std::nullopt);
        return;
    }
    const bool ignoreDiacritics =
        OVUserDefaults::sharedInstance().boolForKey("browserIgnoreDiacritics");
    readDirectory(ignoreDiacritics ? BrowserFolder::Diacritics::removed
                                   : BrowserFolder::Diacritics::kept);
    auto found = std::make_shared<BrowserListing>(directoryContent_,
                                                  makeFileRequest(string, ignoreDiacritics));
    if (!found->search()) {
        block(false, std::nullopt);
        return;
    }
    std::shared_ptr<const BrowserListing> listing = std::move(found);
    filteredItemsAccessQueue_.write([&](const WriteSection&) {
        listing_.swap(listing);
        filteredCount_ = listing_->count();
    });
    block(true, std::nullopt);
}

// ---- The rows

std::shared_ptr<const BrowserListing> TRVBrowserMode::listing() {
    return filteredItemsAccessQueue_.read([&](const ReadSection&) { return listing_; });
}

TRVMode::FilteredItem TRVBrowserMode::filteredItemAtIndex(int64_t index) {
    const auto rows = listing();
    const bool isRow = rows && index >= 0 && static_cast<uint64_t>(index) < rows->count();
    return isRow ? rows->item(static_cast<size_t>(index)) : nullptr;
}

std::optional<FileURL> TRVBrowserMode::urlOfFilteredItemAtIndex(size_t row) {
    const auto rows = listing();
    return rows && row < rows->count() ? std::optional(rows->url(row)) : std::nullopt;
}

std::vector<TRVMode::FilteredItem> TRVBrowserMode::filteredItemsAtIndexSet(
    const std::vector<size_t>& rows) {
    std::vector<FilteredItem> items;
    const auto shown = listing();
    for (const size_t row : rows)
        if (shown && row < shown->count()) items.push_back(shown->item(row));
    return items;
}

std::vector<FileURL> TRVBrowserMode::urlsOfFilteredItemsAtIndexSet(
    const std::vector<size_t>& rows) {
    std::vector<FileURL> urls;
    const auto shown = listing();
    for (const size_t row : rows)
        if (shown && row < shown->count()) urls.push_back(shown->url(row));
    return urls;
}

std::optional<size_t> TRVBrowserMode::rowIndexOfFilteredItemByURL(const FileURL& url) {
    const auto rows = listing();
    return rows ? rows->rowOf(url) : std::nullopt;
}

std::vector<RowContent> TRVBrowserMode::rowContents(size_t first, size_t count) {
    const auto display = attributeDisplay();
    const auto shown = listing();
    std::vector<RowContent> rows;
    for (size_t row = first; shown && row < shown->count() && rows.size() < count; row++) {
        const auto item = shown->item(row);
        RowContent& content =
            rows.emplace_back(makeFileRow(*item, item->url, true, parts_.fileTypes, display));
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
