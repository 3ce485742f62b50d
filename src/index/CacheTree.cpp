// The operations of Cache that look items up and add them.

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "index/Cache.h"
#include "index/Metadata.h"
#include "index/trace.h"
#include "platform/FileTypes.h"
#include "util/log.h"

namespace {

/// Takes the next component off the path; false at its end.
bool nextComponent(std::string_view& rest, std::string_view& component) {
    const size_t begin = rest.find_first_not_of('/');
    if (begin == std::string_view::npos) return false;
    const size_t end = std::min(rest.find('/', begin), rest.size());
    component = rest.substr(begin, end - begin);
    rest.remove_prefix(end);
    return true;
}

void checkAbsolute(const FileURL& url) {
    if (!url.isAbsolute()) logError("called with relative path: %s", url.c_str());
}

void reportMissingMap(const fs_item_t* parent, const FileURL& url) {
    if (!parent->dircontent)
        logError("Parent of %s (type %d) has NULL dircontent list", url.c_str(), parent->type);
}

uint8_t typeInRecentItems(uint8_t type) {
    // Kept: a link to a file counts as something else than a file.
    return type == ITEM_FILE || type == ITEM_BUNDLE ? 1 : 2;
}

}  // namespace

bool Cache::checkName(std::string_view name, const FileURL& url) {
    if (isItemName(name)) return true;
    logError("Cannot get filesystem representation of path component %.*s in %s",
             static_cast<int>(name.size()), name.data(), url.c_str());
    return false;
}

fs_item_t* Cache::fsItemWithURL(const ReadSection&, const FileURL& url) const {
    checkAbsolute(url);
    fs_item_t* item = tree_.root();
    if (url.path().size() == 1) return item;
    std::string_view rest = url.path(), name;
    while (item && nextComponent(rest, name)) {
        if (!checkName(name, url)) return nullptr;
        item = hashmap_find(item->dircontent, name);
    }
    return item;
}

fs_item_t* Cache::fsItemWithURL(const WriteSection& section, const FileURL& url, Create create) {
    if (create == Create::no) return fsItemWithURL(section, url);
    checkAbsolute(url);
    fs_item_t* item = tree_.root();
    if (url.path().size() == 1) return item;
    std::string_view rest = url.path(), name;
    while (item && nextComponent(rest, name)) {
        if (!checkName(name, url)) return nullptr;
        fs_item_t* child = hashmap_find(item->dircontent, name);
        if (!child) {
            const size_t length = url.path().size() - rest.size();
            child = createPathComponent(item, FileURL(url.path().substr(0, length)), url);
        }
        item = child;
    }
    return item;
}

fs_item_t* Cache::createPathComponent(fs_item_t* parent, const FileURL& path,
                                      const FileURL& whole) {
    struct statx found;
    if (!statItem(path.c_str(), found)) {
        traceCache("Not creating item %s for %s: %s", path.c_str(), whole.c_str(),
                   std::strerror(errno));
        return nullptr;
    }
    const bool isFolder = S_ISDIR(found.stx_mode), isLink = S_ISLNK(found.stx_mode);
    struct stat target;
    const bool folderLike =
        isFolder || (isLink && ::stat(path.c_str(), &target) == 0 && S_ISDIR(target.st_mode));
    uint8_t type = ITEM_FILE;
    if (folderLike) type = fileTypes_.isFilePackageAtPath(path) ? ITEM_BUNDLE : ITEM_DIRECTORY;
    if (isLink) type |= ITEM_SYMLINK;
    fs_item_t* item =
        createItem(parent,
                   {.name = path.lastPathComponent(),
                    .type = type,
                    .inode = found.stx_ino,
                    .withMap = isFolder},
                   processFlags.processMetadata ? metadataFromStatBuf(&found) : nullptr);
    traceCache("Created missing path component %s for %s; type: %d", path.c_str(), whole.c_str(),
               type);
    return item;
}

AddPathResult Cache::addPath(const FileURL& url, AddPath with) {
    const bool current = isCurrent();
    return performBlockExclusive([&](const WriteSection& section) -> AddPathResult {
        fs_item_t* parent = nullptr;
        if (current) parent = fsItemWithURL(section, url.deletingLastPathComponent(), Create::yes);
        if (parent) return addBelow(section, parent, url, std::move(with));
        traceCache("%llu     + Not adding path because scan was aborted: %s",
                   EventId{with.fsEventId}, url.c_str());
        return {nullptr, false};
    });
}

AddPathResult Cache::addBelow(const WriteSection& section, fs_item_t* parent, const FileURL& url,
                              AddPath with) {
    const EventId id = with.fsEventId;
    const std::string_view name = url.lastPathComponent();
    const bool isRoot = name == "/";
    if (!isRoot && !checkName(name, url)) return {nullptr, false};
    reportMissingMap(parent, url);
    if (with.changeType)
        addRecentItem(url, {.inode = with.inode,
                            .ofType = typeInRecentItems(with.ofType),
                            .change = with.changeType});
    fs_item_t* item = isRoot ? tree_.root() : hashmap_find(parent->dircontent, name);
    const bool exists = item != nullptr;
    if (!exists) {
        traceCache("%llu     + Adding item to cache: %s", id, url.c_str());
        item = createItem(parent,
                          {.name = name,
                           .type = with.ofType,
                           .inode = with.inode,
                           .withMap = (with.ofType & ITEM_DIRECTORY) != 0},
                          std::move(with.metadata));
        if (!item) return {nullptr, false};
        if (processFlags.dumpCache) dumpItem(section, nullptr, id);
    } else if (processFlags.processMetadata) {
        traceCache("%llu     + Returning cached item with updated metadata: %s", id, url.c_str());
        setMetadata(item, std::move(with.metadata));
    } else {
        traceCache("%llu     + Returning cached item: %s", id, url.c_str());
    }
    noteEvent(with.fsEventId);
    return {item, exists};
}

void Cache::setMetadata(fs_item_t* item, metadata_ptr metadata) {
    ItemTree::setMetadata(tree_.pool().writer(), item, metadata.get());
    if (metadata) metadata->attributes = nullptr;  // the item's now
}

fs_item_t* Cache::createItem(fs_item_t* parent, const ItemTree::NewItem& properties,
                             metadata_ptr metadata) {
    ItemPool::Lane& lane = tree_.pool().writer();
    fs_item_t* item = ItemTree::make(lane, properties);
    if (!item) return nullptr;
    setMetadata(item, std::move(metadata));
    if (tree_.attach(parent, item, presenceOfName(properties.name))) return item;
    ItemTree::free(lane, item);
    return nullptr;
}
