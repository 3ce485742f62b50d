#include "platform/linux/events/EventTranslator.h"

namespace {
constexpr uint32_t kRoot = kFSEventStreamEventFlagRootChanged | kFSEventStreamEventFlagItemIsDir;
}

/// Something came or went in a folder above those that were asked for.
void EventTranslator::onTheWay(FolderNode* folder, const std::string& name, bool cameIn) {
    if (FolderNode* child = FolderTree::child(folder, name)) {
        const Item item(folder, name);
        if (!item.isFolder || item.inode != child->inode) putRootsLost(child, !item.exists);
    }
    lookForRoots_ = lookForRoots_ || cameIn;
}

void EventTranslator::putRootsBack() {
    lookForRoots_ = false;
    if (!tree_.missesRoots()) return;
    for (const FileURL& root : tree_.restoreRoots()) {
        outbox_.cut();
        outbox_.put(
            kRoot | kFSEventStreamEventFlagItemCreated | kFSEventStreamEventFlagMustScanSubDirs,
            root.path());
    }
    outbox_.cut();
}

/// The node is forgotten, and the folders that were asked for at or below it are told as gone.
void EventTranslator::putRootsLost(FolderNode* node, bool dead) {
    for (const FileURL& root : tree_.loseRoots(node, dead)) {
        outbox_.cut();
        outbox_.put(kRoot | kFSEventStreamEventFlagItemRemoved, root.path());
        lookForRoots_ = true;  // another may stand there already
    }
}

void EventTranslator::mounted(const std::string& path, bool isThere) {
    FolderNode* node = tree_.tree().root();
    FolderNode* parent = nullptr;
    const FileURL url(path);
    for (const std::string_view name : url.pathComponents()) {
        if (!node) return;
        parent = node;
        node = FolderTree::child(node, name);
    }
    if (!parent) return;
    // The folders that stood there are hidden, or in sight again.
    if (node) putRootsLost(node, !isThere);
    if (parent->inside && !parent->forgotten) {
        const std::string name(url.lastPathComponent());
        const Item item(parent, name);
        if (item.isFolder) tree_.addChild(parent, name);
        if (item.isFolder && !isThere)
            outbox_.put(kFSEventStreamEventFlagItemCreated | kFSEventStreamEventFlagItemIsDir |
                            kFSEventStreamEventFlagMustScanSubDirs,
                        item.shown);
    }
    putRootsBack();
    tree_.sweep();
}
