#include <cerrno>
#include <cstring>

#include "index/DirectoryOnDisk.h"
#include "index/FSScanner.h"
#include "modes/TRVBrowserMode.h"
#include "modes/TRVMarkedItemsMode.h"
#include "modes/framework/ModeHost.h"
#include "platform/FileTypes.h"
#include "shell/registry/KeyboardShortcuts.h"
#include "util/Unicode.h"
#include "util/log.h"
#include "util/withPrefixReplaced.h"

// Where the user is, was, and goes to.

namespace {

constexpr uint64_t kCommandArrow = kModifierCommand | kModifierNumericPad | kModifierFunction;
constexpr uint64_t kBelowModifiers = 131071;
/// Where desktops show the disks that come and go; the first that is there counts.
constexpr const char* kFoldersOfDisks[] = {"/Volumes", "/run/media", "/media"};
constexpr uint8_t kFoldersOnly = 2;

FileURL nearestExisting(FileURL folder) {
    while (folder.path() != "/" && isGone(folder)) folder = folder.deletingLastPathComponent();
    return folder;
}

std::optional<FileURL> folderOfDisks() {
    for (const char* path : kFoldersOfDisks)
        if (isDirectoryBehindLinks(FileURL(path))) return realPath(FileURL(path));
    return std::nullopt;
}

FileURL renamed(const FileURL& url, const ItemRename& rename) {
    return url.hasPrefix(rename.from) ? withPrefixReplaced(url, rename.from, rename.to) : url;
}

}  // namespace

void TRVBrowserMode::reload(bool animated) {
    contentIsOld_ = true;
    if (isActive()) host().reloadInBackgroundAnimated(animated);
}

void TRVBrowserMode::show(const FileURL& folder, const std::u16string& string) {
    currentDirectoryURL_.set(folder);
    if (isActive())
        host().updateSearchString(string);
    else
        setSearchString(string);
    reload(false);
}

void TRVBrowserMode::goTo(const FileURL& folder, std::optional<Selection> wanted) {
    std::u16string string;
    const auto visited = selectionForSibling_.find(folder);
    if (visited != selectionForSibling_.end()) {
        wanted = visited->second;
        string = searchStringForSibling_[folder];
        logIf(processFlags.debugSelection, Debug,
              "%s Restored selection because we've visited this sibling already: %p",
              logText(folder.path()).c_str(), static_cast<const void*>(&visited->second));
    }
    selection() = std::move(wanted);
    show(folder, string);
}

void TRVBrowserMode::browsePath(const FileURL& url, BundleAs treatBundleAsFile) {
    if (url.empty()) {
        MainQueue::sync([this] { currentDirectoryURL_.set({}); });
        return;
    }
    const auto real = realPath(url);
    if (!real && errno == EACCES) {  // it may well be there
        host().error(std::strerror(EACCES));
        return;
    }
    const FileURL path = real ? *real : parts_.home;
    const bool asFile =
        isDirectoryBehindLinks(path)
            ? treatBundleAsFile == BundleAs::file && parts_.fileTypes.isFilePackageAtPath(path)
            : !isGone(path);
    std::optional<Selection> wanted;
    if (asFile) wanted = Selection{.selectedItems = {path}};
    const FileURL folder = asFile ? path.deletingLastPathComponent() : nearestExisting(path);
    MainQueue::sync([&] {
        if (!asFile && folder == currentDirectoryURL()) return;
        goTo(folder, std::move(wanted));
    });
}

void TRVBrowserMode::leaveVanished(const FileURL& folder) {
    MainQueue::async([this, folder, nearest = nearestExisting(folder)] {
        if (folder == currentDirectoryURL() && nearest != folder) goTo(nearest, std::nullopt);
    });
}

// ---- Up and down

void TRVBrowserMode::pushScrollPosition() {
    const auto& saved = selection();
    anchstorDirectorySelectionStack_.push_back(
        {.searchString = searchString(),
         .selectedRowIndexes = saved ? saved->selectedRowIndexes : std::set<size_t>(),
         .originalChildDirectoryUrl = currentDirectoryURL(),
         .clipOrigin = host().resultTable().clipOrigin()});
}

void TRVBrowserMode::clearScrollPositions() {
    anchstorDirectorySelectionStack_.clear();
    selectionForSibling_.clear();
    searchStringForSibling_.clear();
}

void TRVBrowserMode::browseParentDirectory() {
    FileURL folder = currentDirectoryURL();
    if (folder.empty() || folder.path() == "/") return;
    Selection wanted;
    do {
        wanted.selectedItems = {folder};
        folder = folder.deletingLastPathComponent();
    } while (folder.path() != "/" && isGone(folder));
    MainQueue::sync([&] {
        std::u16string string;
        if (!anchstorDirectorySelectionStack_.empty()) {
            ParentDirectorySelection& level = anchstorDirectorySelectionStack_.back();
            wanted.clipOrigin = level.clipOrigin;
            wanted.selectedRowIndexes = level.selectedRowIndexes;
            string = std::move(level.searchString);
            anchstorDirectorySelectionStack_.pop_back();
        }
        selectionForSibling_.clear();
        searchStringForSibling_.clear();
        logInfo("Updating %s", logText(folder.path()).c_str());
        selection() = std::move(wanted);
        show(folder, string);
    });
}

bool TRVBrowserMode::browseSelection(const std::vector<FileURL>& urls) {
    if (urls.size() != 1) {
        host().error(urls.empty() ? "No item selected" : "Multiple items selected");
        return false;
    }
    const FileURL& alias = urls.front();
    const FileURL url = realPath(alias).value_or(alias);
    if (isActive()) {
        if (!isGone(url) && !isDirectoryBehindLinks(url)) return true;
        if (url.deletingLastPathComponent() == alias.deletingLastPathComponent())
            pushScrollPosition();
        else
            clearScrollPositions();
    } else {
        clearScrollPositions();
    }
    // Behind the change of mode, so that the field's text is the folder's.
    switchModeQueue().async([this, url] {
        if (!isActive()) {
            host().activateMode(*this);
            host().reloadInBackgroundAnimated(false);
        }
        browseQ_.async([this, url] { browsePath(url, BundleAs::folder); });
    });
    return true;
}

// ---- Beside it

BrowserFolder TRVBrowserMode::foldersIn(const FileURL& parent) const {
    Relaxed<bool> abort = false;
    return BrowserFolder(parent,
                         FSScanner::subdirectoriesOfPath(parent,
                                                         {.hideDotFiles = dirSearchHidesDotFiles_,
                                                          .visibleItemTypes = kFoldersOnly,
                                                          .treatBundlesAsFiles = false},
                                                         parts_.fileTypes, abort),
                         BrowserFolder::Diacritics::kept);
}

bool TRVBrowserMode::browseSibling(const FileURL& left, const FileURL& sibling, bool wantMarked) {
    if (wantMarked && !parts_.marks.markedItemsCache().containsURL(sibling)) return false;
    const auto real = realPath(sibling);
    if (!real || !isDirectoryBehindLinks(*real)) return false;
    MainQueue::sync([&] {
        if (!anchstorDirectorySelectionStack_.empty()) {
            ParentDirectorySelection& level = anchstorDirectorySelectionStack_.back();
            level.originalChildDirectoryUrl = sibling;
            level.selectedRowIndexes.clear();
        }
        selectionForSibling_[left] = selection();
        searchStringForSibling_[left] = searchString();
    });
    browsePath(sibling, BundleAs::folder);
    return true;
}

bool TRVBrowserMode::browseSiblingDirectoryPreceding(bool preceding, bool wantMarked) {
    const FileURL left = currentDirectoryURL();
    if (left.empty() || left.path() == "/") return false;
    const BrowserFolder siblings = foldersIn(left.deletingLastPathComponent());
    // The folder itself need not be among them: it may be hidden, or gone.
    size_t at = siblings.placeOf(left.lastPathComponent());
    if (preceding) {
        while (at-- > 0)
            if (browseSibling(left, siblings.urlOf(at), wantMarked)) return true;
        return false;
    }
    if (siblings.indexOf(left.lastPathComponent())) at++;
    for (; at < siblings.count(); at++)
        if (browseSibling(left, siblings.urlOf(at), wantMarked)) return true;
    return false;
}

void TRVBrowserMode::browseSiblingDirectory(bool preceding, bool wantMarked) {
    browseQ_.async(
        [this, preceding, wantMarked] { browseSiblingDirectoryPreceding(preceding, wantMarked); });
}

// ---- Other places

void TRVBrowserMode::toggleSearchRootDirectory() {
    const FileURL here = currentDirectoryURL();
    FileURL next = parts_.home;
    if (here == parts_.home)
        next = FileURL("/");
    else if (here.path() == "/")
        next = folderOfDisks().value_or(parts_.home);
    show(next, {});
    host().updateTextsOfCurrentMode();
}

void TRVBrowserMode::toggleDirSearchHidesDotFiles() {
    dirSearchHidesDotFiles_ = !dirSearchHidesDotFiles_;
    reload(true);
    host().updateTextsOfCurrentMode();
}

KeyboardShortcutEntries TRVBrowserMode::keyboardShortcutsIncludingSuperclass(bool) const {
    return KeyboardShortcuts::sharedInstance().sections({"Browser Mode"});
}

bool TRVBrowserMode::handleEvent(const KeyEvent& event) {
    const uint64_t flags = event.modifierFlags & ~kBelowModifiers;
    if (event.characters == u"/" && (flags & ~kModifierShift) == 0) {
        MainQueue::async([this] { browseSelection(clickedOrSelectedURLs()); });
        return true;
    }
    if (event.keyCode != kKeyUp || flags != kCommandArrow)
        return TRVModeRepresentingFiles::handleEvent(event);
    switchModeQueue().async([this] { browseParentDirectory(); });
    return true;
}

// ---- Changes that are made here

void TRVBrowserMode::prepareRenameSelectionAtRow(size_t row) {
    TRVModeRepresentingFiles::prepareRenameSelectionAtRow(row);
    if (renameState() == kNoRename) host().focusOnSearchField();
}

void TRVBrowserMode::itemRenamedFrom(const ItemRename& rename) {
    for (ParentDirectorySelection& level : anchstorDirectorySelectionStack_)
        level.originalChildDirectoryUrl = renamed(level.originalChildDirectoryUrl, rename);
    const auto renameKeys = [&](auto& siblings) {
        std::remove_reference_t<decltype(siblings)> moved;
        for (auto& [url, value] : siblings) moved[renamed(url, rename)] = std::move(value);
        siblings = std::move(moved);
    };
    renameKeys(selectionForSibling_);
    renameKeys(searchStringForSibling_);
    if (auto& saved = selection()) {
        saved->renamePath(rename.from, rename.to);
        saved->clipOrigin = {};
    }
    const FileURL here = currentDirectoryURL();
    if (here.hasPrefix(rename.from)) currentDirectoryURL_.set(renamed(here, rename));
    MainQueue::async([this] { reload(true); });
}

void TRVBrowserMode::deleteItems(const std::vector<FileURL>& urls) {
    if (!host().reallyTrashItems(urls)) return;
    saveSelectionByIndexOfSelectedRow();
    host().moveToTrash(urls);
}
