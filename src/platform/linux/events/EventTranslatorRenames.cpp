#include "platform/linux/events/EventTranslator.h"

namespace {
constexpr auto kArrivalDelay = std::chrono::seconds(2);
constexpr uint32_t kIsDir = kFSEventStreamEventFlagItemIsDir;
constexpr uint32_t kRenamed = kFSEventStreamEventFlagItemRenamed;
}  // namespace

void EventTranslator::renamed(const RawEvent& event, FolderNode* from, FolderNode* to) {
    FolderNode* const node = event.flags & kIsDir ? moveNode(event, from, to) : nullptr;
    if (tree_.needsBuild()) return;
    if (from && from->forgotten) from = nullptr;
    if (to) to->arrival = std::chrono::steady_clock::now();
    const uint32_t flags = event.flags;
    if (from && to) {
        const Item before(from, event.name);
        const Item after(to, event.newName);
        const bool isSame = !(flags & kIsDir) || !node || node->inode == after.inode;
        if (!before.exists && after.exists && isSame) {
            putHalves(flags, before, after, node);
            return;
        }
        if ((flags & kIsDir) && before.isFolder) tree_.addChild(from, event.name);
        putGone(flags, before);
        putArrived(flags, after, to, node);
    } else if (from) {
        const Item before(from, event.name);
        if ((flags & kIsDir) && before.isFolder) tree_.addChild(from, event.name);
        putGone(flags, before);
    } else {
        putArrived(flags, Item(to, event.newName), to, node);
    }
}

/// Moves the folder in the tree and watches it again where it is now. Null if no longer watched.
FolderNode* EventTranslator::moveNode(const RawEvent& event, FolderNode* from, FolderNode* to) {
    FolderNode* node = from ? FolderTree::child(from, event.name) : nullptr;
    // Where two folders have changed places, or one has taken the name at once, the node may
    // already be the one that came: it stays.
    if (node && Item(from, event.name).inode == node->inode) node = nullptr;
    const bool stays = to && tree_.allows(to, event.newName);
    if (node && stays) {
        if (!tree_.tree().place(node, to, event.newName)) {
            tree_.demandBuild();
            return nullptr;
        }
    } else if (node) {
        putRootsLost(node, false);
    }
    if (!stays || to->forgotten) return nullptr;
    tree_.addChild(to, event.newName);
    return FolderTree::child(to, event.newName);
}

/// A rename that the disk bears out: two events that meet nobody else.
void EventTranslator::putHalves(uint32_t flags, const Item& before, const Item& after,
                                FolderNode* node) {
    const uint32_t told = (flags & ~kIsDir) | after.kind(flags);
    outbox_.cut();
    outbox_.put(told, before.shown);
    outbox_.put(told, after.shown);
    outbox_.cut();
    if (!(flags & kIsDir)) return;
    oldHalves_.insert(before.shown);
    if (node) putUncertain(node);
}

/// What is not there is told as removed; what is there again, as changed.
void EventTranslator::putGone(uint32_t flags, const Item& item) {
    const uint32_t own = flags & kFSEventStreamEventFlagOwnEvent;
    if (!item.exists)
        outbox_.put(own | kFSEventStreamEventFlagItemRemoved | item.kind(flags), item.shown);
    else if (item.isFolder)
        outbox_.put(
            kFSEventStreamEventFlagMustScanSubDirs | kIsDir | kFSEventStreamEventFlagItemModified,
            item.shown);
    else
        outbox_.put(own | kFSEventStreamEventFlagItemModified | item.kind(0), item.shown);
}

/// One half alone, for an item that came from outside or took a strange way.
void EventTranslator::putArrived(uint32_t flags, const Item& item, FolderNode* to,
                                 FolderNode* node) {
    if (!item.exists) {
        to->dirty = true;
        putGone(flags, item);
        return;
    }
    uint32_t told = (flags & kFSEventStreamEventFlagOwnEvent) | kRenamed;
    told |= item.isFolder ? kIsDir | kFSEventStreamEventFlagMustScanSubDirs : item.kind(0);
    outbox_.cut();
    outbox_.put(told, item.shown);
    outbox_.cut();
    if (node) node->dirty = false;
}

/// The reader may have looked for something new under the path that the folder had before.
void EventTranslator::putUncertain(FolderNode* node) {
    const auto lately = std::chrono::steady_clock::now() - kArrivalDelay;
    std::vector<FolderNode*> nodes{node};
    while (!nodes.empty()) {
        FolderNode* const one = nodes.back();
        nodes.pop_back();
        if (one->dirty || one->arrival > lately) {
            one->dirty = false;
            outbox_.put(kFSEventStreamEventFlagMustScanSubDirs | kIsDir,
                        FolderTree::shownPath(one));
            continue;  // with all below it
        }
        for (auto& [name, child] : one->children) nodes.push_back(child.get());
    }
}
