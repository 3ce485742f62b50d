#include "index/FolderComparison.h"

#include <cerrno>

#include "index/Cache.h"
#include "index/DirectoryOnDisk.h"
#include "platform/FileTypes.h"

namespace {

uint8_t kindOf(uint8_t type) {
    return type & static_cast<uint8_t>(~ITEM_SYMLINK);
}

}  // namespace

FolderComparison::FolderComparison(Cache& cache, const Project& project)
    : cache_(cache), views_(folderViews(project, GlobalRules::fromSettings())) {}

std::vector<Difference> FolderComparison::differences(const TouchedFolders& touched) {
    for (const auto& [url, depth] : touched.folders) {
        if (auto directory = findDirectory(url, depth)) compareBelow(std::move(*directory));
        if (depth == TouchedFolders::Depth::entries) continue;
        for (const FileURL& folder : projectFoldersBelow(url))
            if (auto directory = findDirectory(folder, TouchedFolders::Depth::subtree))
                compareBelow(std::move(*directory));
    }
    std::vector<Difference> found;
    for (auto& [url, difference] : differences_) found.push_back(std::move(difference));
    differences_.clear();
    compared_.clear();
    return found;
}

void FolderComparison::compareBelow(Directory directory) {
    waiting_.push_back(std::move(directory));
    while (!waiting_.empty()) {
        Directory next = std::move(waiting_.back());
        waiting_.pop_back();
        const auto [at, isNew] = compared_.try_emplace(next.url, next.deep);
        if (!isNew && (at->second || !next.deep)) continue;
        at->second = next.deep;
        compareEntries(next);
    }
}

/// The way down from the outermost folder of the project, as far as disk and index agree.
std::optional<FolderComparison::Directory> FolderComparison::findDirectory(
    const FileURL& url, TouchedFolders::Depth depth) {
    const FolderView* outermost = nullptr;
    for (const FolderView& view : views_)
        if (url.hasPrefix(view.folder->url)) outermost = &view;
    if (!outermost) return std::nullopt;
    Directory at{.url = outermost->folder->url, .views = DirectoryViews(views_)};
    at.views = at.views.enter(at.url);
    bool isReadByEvents = outermost->events.wantUnmatchedItems;
    if (!compareProjectFolder(*outermost, at, false)) return std::nullopt;
    const std::vector<std::string_view> components = url.pathComponents();
    for (size_t i = at.url.pathComponents().size(); i < components.size(); i++) {
        const FileURL path = at.url.appending(components[i]);
        at.views.setEntry(at.url, components[i]);
        at.deep = false;
        if (const FolderView* view = projectFolderAt(path)) {
            isReadByEvents = view->events.wantUnmatchedItems;
            const bool isWantedAround = isWantedAsItStands(at, path);
            at = {.url = path, .views = at.views.below(path)};
            if (!compareProjectFolder(*view, at, isWantedAround)) return std::nullopt;
            continue;
        }
        const std::optional<Entry> entry = entryAt(path);
        if (!entry) {
            removeIfGone(path);
            return std::nullopt;
        }
        isReadByEvents = at.views.isWantedByEvents(ITEM_DIRECTORY);
        if (!compareEntry(at, *entry, knownItem(path))) return std::nullopt;
        at = {.url = path, .views = at.views.below(path)};
    }
    using Depth = TouchedFolders::Depth;
    if (depth == Depth::subtree || (depth == Depth::asRead && !isReadByEvents)) at.deep = true;
    return at;
}

/// The item of one of the project's own folders: there whatever the rules say, since the way to
/// what it holds leads over it.
bool FolderComparison::compareProjectFolder(const FolderView& view, Directory& directory,
                                            bool isWantedAround) {
    const FileURL& url = directory.url;
    const std::optional<Entry> entry = entryAt(url);
    if (!entry) {
        removeIfGone(url);
        return false;
    }
    const bool isRead = view.events.wantUnmatchedItems;
    const bool isDirectory = isDirectoryBehindLinks(url);
    const std::optional<Known> known = knownItem(url);
    const bool isOther =
        known && ((entry->type != ITEM_FILE && kindOf(known->type) == ITEM_FILE) ||
                  (!isDirectory && kindOf(known->type) != ITEM_FILE) ||
                  (!isDirectory && known->children > 0) || !hasInode(url, known->inode));
    if (isOther || (known && !isDirectory && !isWantedAround)) remove(url, isOther);
    if (!isDirectory) {
        // The folder around it has it as it has any other item.
        if ((!known || isOther) && isWantedAround && isRead) create(url, entry->type, false);
        return false;
    }
    if (known && !isOther) return true;
    const bool comes = isOther || view.folder->includeRoot || isEmptyDirectory(url);
    if (isRead && comes && isReadableDirectory(url)) {
        create(url, ITEM_DIRECTORY, false);
        return false;
    }
    // Without an item nothing below it has one either.
    directory.deep = true;
    return !isOther;
}

bool FolderComparison::compareEntry(Directory& around, const Entry& entry,
                                    const std::optional<Known>& known) {
    const FileURL url = around.url.appending(entry.name);
    const bool isDirectory = entry.type == ITEM_DIRECTORY;
    // What has become a file, or a link over which events came, may still hold something.
    const bool isOther =
        known && (kindOf(known->type) != entry.type || (!isDirectory && known->children > 0) ||
                  (known->inode != entry.inode && !hasInode(url, known->inode)));
    if (isOther) remove(url, true);
    if (!known || isOther) {
        const bool comes =
            around.views.isWantedByEvents(entry.type) && (!isDirectory || isReadableDirectory(url));
        if (comes) create(url, entry.type, !around.deep);
        return isDirectory && !comes && !isOther;
    }
    if (!around.views.isWanted(entry.type) &&
        !(isDirectory && isToBeKept(url, around.views.below(url), *known)))
        remove(url);
    return isDirectory;
}

/// Whether a folder that the rules refuse is an item all the same: with something in it, or empty.
bool FolderComparison::isToBeKept(const FileURL& url, const DirectoryViews& views,
                                  const Known& known) const {
    if (leadsToProjectFolder(url)) return true;
    return views.isRead() &&
           (known.children > 0 || isEmptyDirectory(url) || !isReadableDirectory(url));
}

void FolderComparison::compareEntries(Directory& directory) {
    const DirectoryOnDisk onDisk(directory.url);
    if (onDisk.error() != 0 && onDisk.error() != EACCES && onDisk.error() != EPERM) return;
    std::unordered_map<std::string, Known> known = knownEntries(directory.url);
    for (const DirectoryOnDisk::Entry& each : onDisk.entries()) {
        std::optional<Known> item;
        if (const auto at = known.find(each.name); at != known.end()) {
            item = at->second;
            known.erase(at);
        }
        const FileURL url = directory.url.appending(each.name);
        Entry entry{.name = each.name, .type = each.type, .inode = each.inode};
        if (each.type == ITEM_DIRECTORY && isPackage(url)) entry.type = ITEM_BUNDLE;
        directory.views.setEntry(directory.url, entry.name);
        compareListed(directory, entry, item);
    }
    for (const auto& [name, item] : known) {
        const FileURL url = directory.url.appending(name);
        if (onDisk.error() == 0)
            removeIfGone(url);
        else if (!leadsToProjectFolder(url))
            remove(url);
    }
}

void FolderComparison::compareListed(Directory& directory, const Entry& entry,
                                     const std::optional<Known>& known) {
    const FileURL url = directory.url.appending(entry.name);
    const FolderView* view = projectFolderAt(url);
    if (!view && entry.type != ITEM_DIRECTORY) {
        compareEntry(directory, entry, known);
        return;
    }
    const bool deep = directory.deep;
    if (!view && !deep) {
        compareEntry(directory, entry, known);
        return;
    }
    Directory below{.url = url, .views = directory.views.below(url), .deep = deep};
    const bool goesOn =
        view ? compareProjectFolder(*view, below, directory.views.isWanted(entry.type))
             : compareEntry(directory, entry, known);
    const bool holdsAnything = below.views.isRead() || (known && known->children > 0);
    if (goesOn && below.deep && holdsAnything) waiting_.push_back(std::move(below));
}

bool FolderComparison::isWantedAsItStands(const Directory& around, const FileURL& url) const {
    const std::optional<Entry> entry = entryAt(url);
    return entry && around.views.isWanted(entry->type);
}

void FolderComparison::removeIfGone(const FileURL& url) {
    if (isGone(url) && knownItem(url)) remove(url);
}

std::optional<FolderComparison::Known> FolderComparison::knownItem(const FileURL& url) const {
    return cache_.performBlockReadOnly([&](const ReadSection& section) -> std::optional<Known> {
        const fs_item_t* item = cache_.fsItemWithURL(section, url);
        if (!item) return std::nullopt;
        return Known{item->type, item->inode, item->dircontent ? item->dircontent->count : 0};
    });
}

std::unordered_map<std::string, FolderComparison::Known> FolderComparison::knownEntries(
    const FileURL& directory) const {
    std::unordered_map<std::string, Known> known;
    cache_.performBlockReadOnly([&](const ReadSection& section) {
        const fs_item_t* folder = cache_.fsItemWithURL(section, directory);
        if (!folder || !folder->dircontent) return;
        known.reserve(folder->dircontent->count);
        hashmap_walk(folder->dircontent, [&](const HashMapEntry* entry) {
            const fs_item_t* item = entry->value;
            known.emplace(item->nameView(), Known{item->type, item->inode,
                                                  item->dircontent ? item->dircontent->count : 0});
        });
    });
    return known;
}

std::optional<FolderComparison::Entry> FolderComparison::entryAt(const FileURL& url) const {
    const auto found = statusOnDisk(url);
    if (!found) return std::nullopt;
    Entry entry{
        .name = std::string(url.lastPathComponent()), .type = found->type, .inode = found->inode};
    if (entry.type == ITEM_DIRECTORY && isPackage(url)) entry.type = ITEM_BUNDLE;
    return entry;
}

bool FolderComparison::isPackage(const FileURL& url) const {
    return url.lastPathComponent().find('.') != std::string_view::npos &&
           cache_.fileTypes().isFilePackageAtPath(url);
}

const FolderView* FolderComparison::projectFolderAt(const FileURL& url) const {
    for (const FolderView& view : views_)
        if (view.folder->url == url) return &view;
    return nullptr;
}

bool FolderComparison::leadsToProjectFolder(const FileURL& url) const {
    for (const FolderView& view : views_)
        if (view.folder->url.hasPrefix(url)) return true;
    return false;
}

std::vector<FileURL> FolderComparison::projectFoldersBelow(const FileURL& url) const {
    std::vector<FileURL> below;
    for (const FolderView& view : views_)
        if (view.folder->url != url && view.folder->url.hasPrefix(url))
            below.push_back(view.folder->url);
    return below;
}

bool FolderComparison::isReadByEvents(const FileURL& folder) {
    if (const FolderView* view = projectFolderAt(folder)) return view->events.wantUnmatchedItems;
    auto around = findDirectory(folder.deletingLastPathComponent(), TouchedFolders::Depth::entries);
    differences_.clear();
    if (!around) return false;
    around->views.setEntry(around->url, folder.lastPathComponent());
    return around->views.isWantedByEvents(ITEM_DIRECTORY);
}

void FolderComparison::remove(const FileURL& url, bool isOther) {
    Difference& difference = differences_.try_emplace(url).first->second;
    difference.url = url;
    difference.remove = true;
    difference.isOther = difference.isOther || isOther;
}

void FolderComparison::create(const FileURL& url, uint8_t type, bool withRecentItem) {
    Difference& difference = differences_.try_emplace(url).first->second;
    difference.url = url;
    difference.create = true;
    difference.isDirectory = type != ITEM_FILE;
    difference.withRecentItem = withRecentItem;
}
