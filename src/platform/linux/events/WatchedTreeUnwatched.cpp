#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include "platform/linux/events/WatchedTree.h"
#include "platform/linux/events/folderSignatures.h"
#include "util/log.h"

namespace {

std::string below(const std::string& top, std::string_view path) {
    return path.empty() ? top : top + "/" + std::string(path);
}

}  // namespace

/// The folder and all below it are listed now and then instead.
void WatchedTree::keepUnwatched(const Place& place, const struct statx& item, int folder) {
    FolderNode* node =
        place.name == "." ? place.parent : FolderTree::child(place.parent, place.name);
    if (!node || node->inode != item.stx_ino) node = tree_.add(place.parent, place.name);
    node->device = makedev(item.stx_dev_major, item.stx_dev_minor);
    node->inode = item.stx_ino;
    node->inside = node->inside || place.parent->inside;
    node->unwatched = std::make_unique<FolderSignatures>();
    unwatchedChanged_ = true;
    hasUnwatched_ = true;
    if (folder < 0) return;
    if (!std::exchange(warned_, true))
        logWarning("File events: no watch left for '%s' and others; they are listed instead",
                   FolderTree::shownPath(node).c_str());
    std::vector<std::string> changed;
    relist(node, folder, changed);
    if (since_) changed_.insert(changed_.end(), changed.begin(), changed.end());
}

/// Takes the signatures anew. Tells the folders that differ from the last time, or at the first
/// time those that changed since the stream began; of several below each other only the upper one.
void WatchedTree::relist(FolderNode* node, int folder, std::vector<std::string>& changed) {
    FolderSignatures now;
    const FolderSignatures& before = *node->unwatched;
    const bool isFirst = before.empty();
    const std::string top = FolderTree::shownPath(node);
    std::string told;
    bool hasTold = false;
    const auto wanted = [&](std::string_view path) {
        if (options_.isEnding && options_.isEnding()) return false;
        return !options_.shouldWatch || options_.shouldWatch(below(top, path));
    };
    const auto take = [&](std::string_view path, uint64_t signature, int handle) {
        const uint64_t key = hashOfPath(path);
        now.emplace(key, signature);
        struct statx item;
        const auto old = before.find(key);
        const bool differs =
            isFirst ? since_ && statx(handle, "", AT_EMPTY_PATH, STATX_CTIME, &item) == 0 &&
                          isAfterSince(item)
                    : old == before.end() || old->second != signature;
        if (!differs) return;
        std::string shown = below(top, path);
        if (hasTold && FileURL(shown).isAtOrBelow(FileURL(told))) return;
        hasTold = true;
        told = shown;
        changed.push_back(std::move(shown));
    };
    walkSignatures(folder, wanted, take);
    *node->unwatched = std::move(now);
}

std::vector<FolderNode*> WatchedTree::unwatchedNodes() const {
    std::vector<FolderNode*> nodes;
    if (!hasUnwatched_) return nodes;
    for (FolderNode* node : FolderTree::subtree(tree_.root()))
        if (node->unwatched) nodes.push_back(node);
    return nodes;
}

std::vector<FileURL> WatchedTree::unwatchedFolders() const {
    std::vector<FileURL> folders;
    for (const FolderNode* node : unwatchedNodes())
        if (node->isListed()) folders.emplace_back(FolderTree::shownPath(node));
    return folders;
}

std::vector<std::string> WatchedTree::recheckUnwatched() {
    std::vector<std::string> changed;
    for (FolderNode* node : unwatchedNodes()) {
        if (node->forgotten || !node->unwatched) continue;
        const bool wasListed = node->isListed();
        if (node->parent && (!wasListed || watches_->hasRoomFor(node->unwatched->size()))) {
            // What happened before its watch stood is not known in detail.
            addChild(node->parent, node->name);
            if (wasListed || node->isFollowed()) changed.push_back(FolderTree::shownPath(node));
        } else if (const FileHandle handle = openNode(node)) {
            relist(node, handle.get(), changed);
        }  // else its parent tells that it has gone
    }
    unwatchedChanged_ = true;
    sweep();
    return changed;
}
