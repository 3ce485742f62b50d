#include "index/RecentItems.h"

#include <algorithm>
#include <mutex>

#include "index/trace.h"
#include "util/World.h"

namespace {
size_t limit(size_t count, int64_t maxCount) {
    return std::min(count, static_cast<size_t>(std::max<int64_t>(maxCount, 0)));
}
}  // namespace

void RecentItems::add(RecentItem item, int64_t maxCount) {
    std::lock_guard lock(mutex_);
    const auto same = std::find_if(items_.begin(), items_.end(), [&](const RecentItem& other) {
        return other.url == item.url || other.inode == item.inode;
    });
    // Kept: only the first of them goes, so a second one may stand with the same path or inode.
    if (same != items_.end()) items_.erase(same);
    items_.insert(items_.begin(), std::move(item));
    items_.resize(limit(items_.size(), maxCount));
}

bool RecentItems::rename(const FileURL& from, const FileURL& to) {
    std::lock_guard lock(mutex_);
    bool renamedItself = false;
    for (RecentItem& item : items_) {
        if (!item.url.hasPrefix(from)) continue;
        const std::string& path = item.url.path();
        const size_t length = from.path().size();
        FileURL renamed;
        if (path.size() == length) {
            renamed = to;
            item.timestamp = World::current().clock().time();
            renamedItself = true;
        } else if (path.size() > length && path[length] == '/') {
            renamed = FileURL(to.path() + path.substr(length));
        } else {
            continue;
        }
        traceCache("Rename Recent Item '%s' -> '%s'", from.c_str(), to.c_str());
        traceCache("old: %s\nnew: %s", item.url.c_str(), renamed.c_str());
        item.url = std::move(renamed);
    }
    return renamedItself;
}

void RecentItems::removeBelow(const FileURL& url) {
    std::lock_guard lock(mutex_);
    std::erase_if(
        items_, [&](const RecentItem& item) { return item.url.hasPrefix(url) || item.url == url; });
}

std::optional<size_t> RecentItems::indexOf(const FileURL& url) const {
    std::shared_lock lock(mutex_);
    for (size_t i = 0; i < items_.size(); i++)
        if (items_[i].url == url) return i;
    return std::nullopt;
}

std::vector<RecentItem> RecentItems::items(int64_t maxCount) const {
    std::shared_lock lock(mutex_);
    const size_t count = limit(items_.size(), maxCount);
    return {items_.begin(), items_.begin() + static_cast<std::ptrdiff_t>(count)};
}
