#include "platform/linux/events/EventTranslator.h"

#include <sys/stat.h>

#include "util/log.h"

namespace {
constexpr size_t kMostOldHalves = 10'000;
constexpr uint32_t kScan =
    kFSEventStreamEventFlagMustScanSubDirs | kFSEventStreamEventFlagItemIsDir;

std::string inFolder(std::string folder, const std::string& name) {
    if (name.empty()) return folder;
    if (folder != "/") folder += '/';
    return folder + name;
}
}  // namespace

EventTranslator::Item::Item(const FolderNode* folder, const std::string& name)
    : shown(::inFolder(FolderTree::shownPath(folder), name)) {
    struct stat item;
    exists = lstat(::inFolder(FolderTree::path(folder), name).c_str(), &item) == 0;
    if (!exists) return;
    isFolder = S_ISDIR(item.st_mode);
    isLink = S_ISLNK(item.st_mode);
    inode = item.st_ino;
}

uint32_t EventTranslator::Item::kind(uint32_t flags) const {
    if (flags & kFSEventStreamEventFlagItemIsDir) return kFSEventStreamEventFlagItemIsDir;
    return isLink ? kFSEventStreamEventFlagItemIsSymlink : kFSEventStreamEventFlagItemIsFile;
}

void EventTranslator::translate(std::vector<RawEvent>& events) {
    for (RawEvent& event : events) {
        if (event.overflow || tree_.needsBuild()) {
            rebuild(event.overflow ? uint32_t{kFSEventStreamEventFlagKernelDropped} : 0u);
            return;
        }
        if (!markSelf_) event.flags &= ~uint32_t{kFSEventStreamEventFlagOwnEvent};
        translateOne(event);
    }
    if (lookForRoots_) putRootsBack();
    if (tree_.needsBuild()) rebuild(0);
    if (oldHalves_.size() > kMostOldHalves) oldHalves_.clear();
    tree_.sweep();
}

void EventTranslator::rebuild(uint32_t why) {
    if (why) logWarning("File events: the kernel's queue ran over");
    tree_.build();
    putScanOfRoots(why);
}

void EventTranslator::putScanOfRoots(uint32_t why) {
    outbox_.cut();
    for (const WatchedTree::Root& root : tree_.roots()) outbox_.put(kScan | why, root.given.path());
    outbox_.cut();
}

void EventTranslator::translateOne(RawEvent& event) {
    FolderNode* from = tree_.tree().find(event.folder);
    FolderNode* to = tree_.tree().find(event.newFolder);
    if (event.gone) {
        if (from) watchEnded(from);
        return;
    }
    const bool isRename = (event.flags & kFSEventStreamEventFlagItemRenamed) != 0;
    if (from && !from->inside) {
        const bool cameIn = !isRename && (event.flags & kFSEventStreamEventFlagItemCreated);
        if (!event.name.empty()) onTheWay(from, event.name, cameIn);
        from = nullptr;
    }
    if (to && !to->inside) {
        onTheWay(to, event.newName, true);
        to = nullptr;
    }
    if (from && from->forgotten) from = nullptr;
    if (to && to->forgotten) to = nullptr;
    if (isRename && (from || to))
        renamed(event, from, to);
    else if (!isRename && from)
        inFolder(event, from);
}

/// The kernel has ended a watch: the folder is gone, or its file system.
void EventTranslator::watchEnded(FolderNode* folder) {
    if (!folder->parent) return;
    putRootsLost(folder, true);
}

void EventTranslator::inFolder(const RawEvent& event, FolderNode* folder) {
    const Item item(folder, event.name);
    uint32_t flags = event.flags;
    if (flags & kFSEventStreamEventFlagItemCreated) {
        folder->arrival = std::chrono::steady_clock::now();
        if (!item.exists) {
            // Gone again, or the folder has moved: it is looked at when its rename arrives.
            folder->dirty = true;
            if (flags & kFSEventStreamEventFlagItemRemoved) putGone(flags, item);
            return;
        }
    }
    uint32_t told = flags & ~uint32_t{kFSEventStreamEventFlagItemIsDir};
    told |= item.kind(flags);
    if (!event.name.empty() && (flags & kFSEventStreamEventFlagItemIsDir))
        ofFolder(flags, folder, event.name, item, told);
    outbox_.put(told, item.shown);
}

/// Keeps the tree right, and asks for a full look where the kernel has not told all.
void EventTranslator::ofFolder(uint32_t flags, FolderNode* folder, const std::string& name,
                               const Item& item, uint32_t& told) {
    FolderNode* const child = FolderTree::child(folder, name);
    if ((flags & kFSEventStreamEventFlagItemCreated) && item.isFolder) {
        const bool used = tree_.addChild(folder, name);
        if (used || oldHalves_.count(item.shown)) told |= kScan;
    } else if (flags & kFSEventStreamEventFlagItemRemoved) {
        if (child && !(item.isFolder && child->inode == item.inode)) putRootsLost(child, true);
        if (item.isFolder) told |= kScan;  // another one has its name already
    } else if (item.isFolder && !(child && child->isFollowed())) {
        // It could not be read before, or something else had its name.
        tree_.addChild(folder, name);
        const FolderNode* now = FolderTree::child(folder, name);
        if (now && now->isFollowed()) told |= kScan;
    }
}
