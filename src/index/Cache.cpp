#include "index/Cache.h"

#include <algorithm>

#include "index/CacheMonitor.h"
#include "index/trace.h"
#include "util/FileIO.h"
#include "util/World.h"
#include "util/log.h"
#include "util/settings/OVUserDefaults.h"

namespace {
std::time_t now() {
    return World::current().clock().time();
}

int64_t recentItemsMaxCount() {
    return OVUserDefaults::sharedInstance().integerForKey("recentItemsMaxCount");
}
}  // namespace

Cache::Cache(IndexObserver& observer, const FileTypes& fileTypes)
    : observer_(observer), fileTypes_(fileTypes) {
    CacheMonitor::sharedInstance();
}

Cache::~Cache() {
    traceCache("Deallocating cache %p", static_cast<void*>(this));
    observer_.consolidateFilteredList();
    performBlockExclusive([&](const WriteSection&) {
        const fs_item_array_t& all = tree_.all();
        for (uint64_t i = 0; i < all.count; i++) tellOfRemoval(all.items[i], 0, Marks::follow);
    });
    observer_.consolidateFilteredList();
}

bool Cache::performBlockWithItemsInRange(const ReadSection&, IndexRange range,
                                         FunctionRef<bool(fs_item_t*)> f) const {
    const fs_item_array_t& all = tree_.all();
    for (uint64_t i = 0; i < range.length; i++) {
        const uint64_t at = range.location + i;
        if (!f(at < all.count ? all.items[at] : nullptr)) return false;
    }
    return true;
}

std::span<fs_item_t* const> Cache::items(const ReadSection&) const {
    return {tree_.all().items, tree_.all().count};
}

std::span<const NameMask> Cache::nameMasks(const ReadSection&) const {
    return {tree_.nameMasks(), tree_.all().count};
}

void Cache::addRecentItem(const FileURL& url, const RecentItemChange& with) {
    recentItems_.add({.url = url,
                      .inode = with.inode,
                      .type = with.ofType,
                      .change = with.change,
                      .timestamp = now()},
                     recentItemsMaxCount());
}

bool Cache::renameRecentItemsFrom(const FileURL& from, const FileURL& to) {
    return recentItems_.rename(from, to);
}

void Cache::removeRecentItemsBelowURL(const FileURL& url) {
    recentItems_.removeBelow(url);
}

std::optional<size_t> Cache::indexOfRecentItemExistsWithName(std::string_view,
                                                             const FileURL& path) const {
    return recentItems_.indexOf(path);
}

std::vector<RecentItem> Cache::recentItems() const {
    return recentItems_.items(recentItemsMaxCount());
}

void Cache::noteEvent(uint64_t fsEventId) {
    if (fsEventId == 0) return;
    lastEventStreamEventId_ = fsEventId;
    cacheModifiedByFsEventUpdate_ = now();
}

uint64_t Cache::nextFsEventId() const {
    const uint64_t last = lastEventStreamEventId_;
    return last == kNoEvent ? 0 : last + 2;
}

bool Cache::resultListUpdateDue() const {
    const int64_t modified = cacheModifiedByFsEventUpdate_;
    const int64_t time = now();
    if (modified == 0 || modified > time) return false;
    // A burst of changes waits for the first second without one; but a steady stream of them is
    // shown every three seconds all the same.
    return modified < time || time - resultListReloadTime_ > 2;
}

void Cache::resultListUpdated() {
    cacheModifiedByFsEventUpdate_ = 0;
    resultListReloadTime_ = now();
}

void Cache::dumpItem(const fs_item_t* item, uint64_t fsEventId) {
    performBlockReadOnly([&](const ReadSection& section) { dumpItem(section, item, fsEventId); });
}

void Cache::dumpItem(const ReadSection&, const fs_item_t* item, uint64_t fsEventId) const {
    std::vector<const fs_item_t*> waiting{item ? item : tree_.root()};
    std::vector<const fs_item_t*> children;
    while (!waiting.empty()) {
        const fs_item_t* next = waiting.back();
        waiting.pop_back();
        logInfo("%llu     > %s", static_cast<unsigned long long>(fsEventId),
                fs_item_url(next).c_str());
        children.clear();
        hashmap_walk(next->dircontent,
                     [&](HashMapEntry* entry) { children.push_back(entry->value); });
        waiting.insert(waiting.end(), children.rbegin(), children.rend());
    }
}

Result<void> Cache::dumpTo(const FileURL& url) {
    std::string text;
    performBlockReadOnly([&](const ReadSection& section) {
        for (const fs_item_t* item : items(section)) text += fs_item_url(item).path() + '\n';
    });
    return replaceFile(url, text, 0600);
}
