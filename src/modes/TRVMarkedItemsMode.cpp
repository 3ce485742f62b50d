#include "modes/TRVMarkedItemsMode.h"

#include <algorithm>
#include <utility>

#include "core/state/GlobalState.h"
#include "modes/fileRows.h"
#include "modes/framework/FileSorter.h"
#include "modes/framework/ModeHost.h"
#include "util/World.h"
#include "util/settings/OVUserDefaults.h"

namespace {
constexpr Hues kColours{0.083};
}

TRVMarkedItemsMode::TRVMarkedItemsMode(const FileTypes& fileTypes, OVUserDefaults& settings)
    : TRVModeSupportingPath(kMarkedItemsMode),
      fileTypes_(fileTypes),
      markedItemsCache_(fileTypes, settings, "markedItems"),
      fileOperationItemsCache_(fileTypes) {}

TRVMarkedItemsMode& TRVMarkedItemsMode::sharedInstance() {
    return World::current().shared<TRVMarkedItemsMode>();
}

void TRVMarkedItemsMode::themeChanged() {
    const bool dark = host().isDark();
    const Colour ground = kColours.background(dark);
    // Nine parts of it and one of white or black.
    const Colour evenRow{ground.hue, ground.saturation * 0.1,
                         dark ? ground.brightness * 0.1 : 0.9 + ground.brightness * 0.1};
    setColours(ground, kColours.oddRow(dark), evenRow);
    setupTextAttrsForColor(backgroundColor());
}

// ---- The two lists

void TRVMarkedItemsMode::setFileOperationsMode(bool fileOperations) {
    if (fileOperationsMode_ == fileOperations) return;
    fileOperationsMode_ = fileOperations;
    submodeChanged();
}

void TRVMarkedItemsMode::submodeChanged() {
    std::swap(selection(), otherSelection_);
}

void TRVMarkedItemsMode::toggleMarkedItemsMode() {
    setFileOperationsMode(!fileOperationsMode_);
    host().updateTextsOfCurrentMode();
    host().reloadInBackgroundAnimated(false);
}

void TRVMarkedItemsMode::resignKeepingSubMode(bool keep) {
    TRVModeSupportingPath::resign();
    if (!keep) restorePrimarySubMode();
}

void TRVMarkedItemsMode::restorePrimarySubMode() {
    setFileOperationsMode(false);
}

void TRVMarkedItemsMode::listChanged(bool isOnShow) {
    host().updateMarkersOfVisibleItems();
    if (isActive() && isOnShow) host().reloadInBackgroundAnimated(true);
}

void TRVMarkedItemsMode::toggleMarkedItemFlag(const std::vector<FileURL>& urls) {
    markedItemsCache_.addOrRemoveURLs(urls);
    listChanged(true);
}

void TRVMarkedItemsMode::selectItemsAsSource(const std::vector<FileURL>& urls,
                                             PasteboardAction action) {
    fileOperationItemsCache_.setURLs(urls);
    GlobalState::sharedInstance().setCurrentPasteboardAction(action);
    host().info(std::string("Item") + (urls.size() > 1 ? "s" : "") +
                (action == kCopy ? " set as copy source" : " set as move source"));
    listChanged(fileOperationsMode_);
}

bool TRVMarkedItemsMode::addItemsToSource(const std::vector<FileURL>& urls,
                                          PasteboardAction action) {
    const int64_t current = GlobalState::sharedInstance().currentPasteboardAction();
    if (current == kNoAction) {
        selectItemsAsSource(urls, action);
        return true;
    }
    if (current != action) {
        host().error("Cannot mix copy/move actions");
        return false;
    }
    fileOperationItemsCache_.addOrRemoveURLs(urls);
    listChanged(true);
    return true;
}

// ---- What happened to files

bool TRVMarkedItemsMode::isMarked(const FileURL& url) const {
    return (markedItemsCache_.count() > 0 && markedItemsCache_.containsURL(url)) ||
           (fileOperationItemsCache_.count() > 0 && fileOperationItemsCache_.containsURL(url));
}

RowContent::Source TRVMarkedItemsMode::sourceOf(const FileURL& url) const {
    using Source = RowContent::Source;
    if (fileOperationItemsCache_.count() == 0 || !fileOperationItemsCache_.containsURL(url))
        return Source::none;
    const int64_t action = GlobalState::sharedInstance().currentPasteboardAction();
    return action == kCopy ? Source::copy : action == kMove ? Source::move : Source::none;
}

bool TRVMarkedItemsMode::hasMarkedPaths() const {
    return markedItemsCache_.count() + fileOperationItemsCache_.count() > 0;
}

void TRVMarkedItemsMode::updatePathCachesAfterRename(const FileURL& from, const FileURL& to) {
    markedItemsCache_.renameURL(from, to);
    fileOperationItemsCache_.renameURL(from, to);
}

void TRVMarkedItemsMode::updatePathCachesAfterRemovePath(const FileURL& url) {
    markedItemsCache_.removePathIfGone(url);
    fileOperationItemsCache_.removePathIfGone(url);
}

void TRVMarkedItemsMode::storeRemovedPaths() {
    markedItemsCache_.storeRemovedPaths();
}

// ---- What is shown

KeyboardShortcutEntries TRVMarkedItemsMode::keyboardShortcutsIncludingSuperclass(
    bool including) const {
    const auto& shortcuts = KeyboardShortcuts::sharedInstance();
    return including ? shortcuts.sections({"Paths", "Quick Filter", "Marked Items Mode"})
                     : shortcuts.sections({"Marked Items Mode"});
}

void TRVMarkedItemsMode::searchWindowDidOpen() {
    host().reloadInBackgroundAnimated(false);
}

std::string TRVMarkedItemsMode::infoString() {
    const uint64_t count = listOnShow().count();
    std::string text = "Marked items";
    if (fileOperationsMode_) {
        if (count == 0) return "No items marked for copy/move";
        const int64_t action = GlobalState::sharedInstance().currentPasteboardAction();
        text = std::string("Items marked for ") + (action == kCopy ? "copying" : "moving");
    }
    return text + " [" + std::to_string(filteredCount()) + "/" + std::to_string(count) + "]";
}

void TRVMarkedItemsMode::searchForString(const std::u16string& string,
                                         const SearchFinalBlock& block) {
    if (renameState() != kNoRename) {
        block(false, std::nullopt);
        return;
    }
    const OVUserDefaults& settings = OVUserDefaults::sharedInstance();
    RankRequest request =
        makeFileRequest(string, settings.boolForKey("markedItemsIgnoreDiacritics"));
    request.filenameOnly = settings.boolForKey("markedItemsMatchFilenameOnly");
    const auto mask = static_cast<uint8_t>(settings.integerForKey("markedItemsVisibleItemTypes"));
    FileMatcher matcher(request);
    std::vector<std::shared_ptr<MatchingMarkedItem>> found;
    for (FileURL& url : listOnShow().urlsMatchingVisibleItemTypes(mask)) {
        if (abortSearch()) {
            block(false, std::nullopt);
            return;
        }
        auto item = std::make_shared<MatchingMarkedItem>();
        if (!matcher.match(url, *item, FileMatcher::Presence::optional)) continue;
        item->url = std::move(url);
        item->matchFilenameOnly = request.filenameOnly;
        found.push_back(std::move(item));
    }
    sortFileItems(found, matcher);
    createFilteredItemsFromArray({found.begin(), found.end()}, RowLookup::byPath);
    block(true, std::nullopt);
}

std::optional<FileURL> TRVMarkedItemsMode::matchingItemToURL(const MatchingItem& item) {
    const auto* marked = dynamic_cast<const MatchingMarkedItem*>(&item);
    return marked ? std::optional(marked->url) : std::nullopt;
}

std::vector<RowContent> TRVMarkedItemsMode::rowContents(size_t first, size_t count) {
    const auto display = attributeDisplay();
    std::vector<RowContent> rows;
    for (const FilteredItem& found : filteredItemsFrom(first, count)) {
        const auto* item = dynamic_cast<const MatchingMarkedItem*>(found.get());
        if (!item) break;
        const size_t row = first + rows.size();
        RowContent& content = rows.emplace_back(
            makeFileRow(*item, item->url, item->matchFilenameOnly, fileTypes_, display));
        decorate(content, row, item->url);
    }
    return rows;
}
