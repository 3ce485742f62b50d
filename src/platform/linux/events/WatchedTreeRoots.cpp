#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "platform/linux/events/MountTable.h"
#include "platform/linux/events/WatchedTree.h"
#include "util/log.h"

namespace {

/// The path without links; where its end is missing, that stands as it was given.
std::string realPathOf(const FileURL& url) {
    FileURL existing = url;
    std::string missing;
    for (;;) {
        if (char* real = realpath(existing.c_str(), nullptr)) {
            std::string path = real;
            free(real);
            if (path == "/" && !missing.empty()) path.clear();
            return path + missing;
        }
        const FileURL parent = existing.deletingLastPathComponent();
        if (parent == existing || existing.empty()) return url.path();
        missing.insert(0, "/" + std::string(existing.lastPathComponent()));
        existing = parent;
    }
}

}  // namespace

/// One step down to a root: the folder's node, watched for what comes and goes in it.
FolderNode* WatchedTree::step(FolderNode* parent, const std::string& name, FileHandle& handle) {
    const int from = name == "/" ? AT_FDCWD : handle.get();
    FileHandle next(openat(from, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    const bool readable = static_cast<bool>(next);
    if (!readable)
        next.reset(openat(from, name.c_str(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    handle = std::move(next);
    struct stat item;
    if (!handle || fstat(handle.get(), &item) != 0) return nullptr;
    FolderNode* node = parent ? FolderTree::child(parent, name) : tree_.root();
    if (node && parent && node->inode != item.st_ino) node = nullptr;
    if (!node) node = tree_.add(parent, name);
    node->device = item.st_dev;
    node->inode = item.st_ino;
    if (!readable || !node->key.empty()) return node;
    WatchSet::Added added =
        watches_->add(handle.get(), item.st_dev, KernelWatch::Interest::names, true);
    if (added.outcome == WatchSet::Outcome::watched) tree_.setKey(node, std::move(added.key));
    return node;
}

bool WatchedTree::addRoot(Root& root) {
    const FileURL real(realPathOf(root.given));
    FileHandle handle;
    FolderNode* node = step(nullptr, "/", handle);
    for (const std::string_view name : real.pathComponents())
        if (node) node = step(node, std::string(name), handle);
    if (!node) return false;
    const bool isFirst =
        std::none_of(roots_.begin(), roots_.end(), [&](const Root& r) { return r.node == node; });
    root.node = node;
    if (isFirst && !node->inside && real != root.given)
        node->shown = std::make_unique<std::string>(root.given.path());
    if (node->inside) return true;  // below another one
    node->inside = true;
    walk({std::make_shared<FileHandle>(std::move(handle)), node, "."});
    return true;
}

std::vector<FileURL> WatchedTree::restoreRoots() {
    std::vector<FileURL> back;
    for (Root& root : roots_)
        if (!root.node && addRoot(root)) back.push_back(root.given);
    return back;
}

std::vector<FileURL> WatchedTree::loseRoots(FolderNode* node, bool dead) {
    std::vector<FileURL> lost;
    for (Root& root : roots_) {
        if (!root.node || !FolderTree::isAtOrBelow(root.node, node)) continue;
        lost.push_back(root.given);
        root.node = nullptr;
    }
    forget(node, dead);
    return lost;
}

std::vector<std::string> WatchedTree::lostMounts(const MountTable& mounts) const {
    std::vector<std::string> lost;
    for (const FolderNode* node : FolderTree::subtree(tree_.root())) {
        if (!node->parent || node->device == node->parent->device) continue;
        std::string path = FolderTree::path(node);
        if (mounts.has(path)) continue;  // and its disk, which may be slow, is not asked
        struct stat item;
        const bool isThere = lstat(path.c_str(), &item) == 0;
        if (isThere ? item.st_dev != node->device || item.st_ino != node->inode
                    : errno == ENOENT || errno == ENOTDIR)
            lost.push_back(std::move(path));
    }
    return lost;
}

bool WatchedTree::missesRoots() const {
    return std::any_of(roots_.begin(), roots_.end(), [](const Root& root) { return !root.node; });
}
