#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <cerrno>
#include <cstring>

#include "platform/linux/events/WatchedTree.h"
#include "platform/linux/events/listFolder.h"
#include "util/log.h"

namespace {

constexpr size_t kVisitsARead = 256;  // between looks at the kernel's queue
constexpr size_t kMostBacklog = 500'000;

bool isSame(const statx_timestamp& a, const statx_timestamp& b) {
    return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

dev_t deviceOf(const struct statx& item) {
    return makedev(item.stx_dev_major, item.stx_dev_minor);
}

}  // namespace

bool WatchedTree::addChild(FolderNode* parent, std::string_view name) {
    auto folder = std::make_shared<FileHandle>(openNode(parent));
    if (!*folder) {
        parent->dirty = true;
        return false;
    }
    return walk({std::move(folder), parent, std::string(name)});
}

/// Open only if the folder still is where we believe it to be.
FileHandle WatchedTree::openNode(const FolderNode* node) const {
    const std::string path = FolderTree::path(node);
    FileHandle handle(open(path.c_str(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    struct stat item;
    if (handle && (fstat(handle.get(), &item) != 0 || item.st_dev != node->device ||
                   item.st_ino != node->inode))
        handle.reset();
    return handle;
}

bool WatchedTree::walk(Place first) {
    std::vector<Place> places;
    const bool used = visit(first, places);
    first.folder.reset();
    while (!places.empty() && !needsBuild_ && !(options_.isEnding && options_.isEnding())) {
        const Place place = std::move(places.back());
        places.pop_back();
        visit(place, places);
        if (++visits_ % kVisitsARead == 0 && backlog_.size() < kMostBacklog)
            watches_->read(backlog_, kMostBacklog);
    }
    return used;
}

/// Watch first, list second. "." is the parent itself.
bool WatchedTree::visit(const Place& place, std::vector<Place>& more) {
    if (place.parent->forgotten) return false;
    const bool isItself = place.name == ".";
    if (!isItself && !allows(place.parent, place.name)) {
        if (FolderNode* old = FolderTree::child(place.parent, place.name)) forget(old);
        return false;
    }
    const auto folder = std::make_shared<FileHandle>(
        openat(place.folder->get(), place.name.c_str(),
               O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK));
    if (!*folder) return notOpened(place, errno);
    struct statx item;
    constexpr unsigned kMask = STATX_INO | STATX_BTIME | STATX_MTIME | STATX_CTIME;
    if (statx(folder->get(), "", AT_EMPTY_PATH, kMask, &item) != 0) return false;

    const FolderNode* old = isItself ? place.parent : FolderTree::child(place.parent, place.name);
    const bool isLikelyKnown = old && old->inode == item.stx_ino && !old->key.empty();
    const WatchSet::Added added =
        watches_->add(folder->get(), deviceOf(item), KernelWatch::Interest::all, isLikelyKnown);
    if (added.outcome == WatchSet::Outcome::full) {
        keepUnwatched(place, item, folder->get());
        return true;
    }
    if (added.outcome == WatchSet::Outcome::failed)
        logWarning("File events: cannot watch '%s' in '%s': %s", place.name.c_str(),
                   FolderTree::path(place.parent).c_str(), strerror(errno));
    if (added.outcome != WatchSet::Outcome::watched) return false;

    bool isNew = true;
    FolderNode* const node = nodeFor(place, item, added.key, isNew);
    if (!node) return true;
    bool used = !isNew || !(item.stx_mask & STATX_BTIME) || !isSame(item.stx_btime, item.stx_mtime);
    if (isAfterSince(item)) changed_.push_back(FolderTree::shownPath(node));
    listFolder(folder->get(), [&](const char* name, unsigned char type, ino_t) {
        used = true;
        if (type == DT_DIR || type == DT_UNKNOWN) more.push_back({folder, node, name});
    });
    return used;
}

/// The node of the folder just watched, at its place in the tree; null if that cannot be.
FolderNode* WatchedTree::nodeFor(const Place& place, const struct statx& item,
                                 const std::string& key, bool& isNew) {
    const bool isItself = place.name == ".";
    FolderNode* node = tree_.find(key);
    if (node) {
        isNew = false;
        watches_->countOnce(key);
        // Met at another place: it was moved, and the event of that still waits to be read.
        if (isItself ? node != place.parent : !tree_.place(node, place.parent, place.name)) {
            needsBuild_ = true;
            return nullptr;
        }
    } else {
        node = isItself ? place.parent : FolderTree::child(place.parent, place.name);
        if (!isItself && (!node || !node->key.empty() || node->inode != item.stx_ino))
            node = tree_.add(place.parent, place.name);
        tree_.setKey(node, key);
    }
    node->device = deviceOf(item);
    node->inode = item.stx_ino;
    node->inside = node->inside || place.parent->inside;
    node->unwatched.reset();
    return node;
}

bool WatchedTree::isAfterSince(const struct statx& item) const {
    if (!since_) return false;
    const auto seconds = static_cast<time_t>(item.stx_ctime.tv_sec);
    return seconds > since_->tv_sec ||
           (seconds == since_->tv_sec &&
            static_cast<long>(item.stx_ctime.tv_nsec) >= since_->tv_nsec);
}

/// A folder that may be readable one day is asked again now and then.
bool WatchedTree::notOpened(const Place& place, int error) {
    if (error == ENOENT || error == ENOTDIR || error == ELOOP) return false;
    if (error != EACCES)
        logWarning("File events: cannot open '%s' in '%s': %s", place.name.c_str(),
                   FolderTree::path(place.parent).c_str(), strerror(error));
    struct stat status;
    if (fstatat(place.folder->get(), place.name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0 ||
        !S_ISDIR(status.st_mode))
        return false;
    struct statx item {};
    item.stx_ino = status.st_ino;
    item.stx_dev_major = major(status.st_dev);
    item.stx_dev_minor = minor(status.st_dev);
    keepUnwatched(place, item, -1);
    return error != EACCES;
}
