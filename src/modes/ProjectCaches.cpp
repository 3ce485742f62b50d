#include "modes/ProjectCaches.h"

#include <malloc.h>

#include <mutex>

#include "datatypes/Project.h"
#include "util/log.h"

std::shared_ptr<Cache> ProjectCaches::currentCache() const {
    std::shared_lock lock(cachesAccessLock_);
    return currentCache_;
}

std::shared_ptr<Cache> ProjectCaches::cacheForProject(const Project& project) const {
    std::shared_lock lock(cachesAccessLock_);
    const auto found = caches_.find(project.uuid);
    return found == caches_.end() ? nullptr : found->second.cache;
}

bool ProjectCaches::setCurrentCacheByProject(const Project& project) {
    std::lock_guard lock(cachesAccessLock_);
    auto& cache = caches_[project.uuid].cache;
    const bool existed = cache != nullptr;
    if (!existed) cache = std::make_shared<Cache>(observer_, fileTypes_);
    logInfo("%s cache: Project: %s; Search mode %p; Cache %p",
            existed ? "Re-using" : "Creating new", project.name.c_str(),
            static_cast<void*>(&observer_), static_cast<void*>(cache.get()));
    currentCache_ = cache;
    return existed;
}

bool ProjectCaches::removeCacheForProject(const Project& project) {
    std::vector<std::shared_ptr<Cache>> dropped;
    bool wasCurrent = false;
    {
        std::lock_guard lock(cachesAccessLock_);
        const auto found = caches_.find(project.uuid);
        const Cache* cache = found == caches_.end() ? nullptr : found->second.cache.get();
        logInfo("Deleting cache: Project: %s; Search mode %p; Cache %p", project.name.c_str(),
                static_cast<void*>(&observer_), static_cast<const void*>(cache));
        if (!cache) return false;
        wasCurrent = take(found, dropped);
    }
    drop(std::move(dropped));
    return wasCurrent;
}

bool ProjectCaches::removeVirtualProjectsBut(const std::string& path) {
    std::vector<std::shared_ptr<Cache>> dropped;
    bool wasCurrent = false;
    {
        std::lock_guard lock(cachesAccessLock_);
        for (auto each = caches_.begin(); each != caches_.end();) {
            const auto entry = each++;
            if (entry->first.starts_with('/') && entry->first != path)
                wasCurrent |= take(entry, dropped);
        }
    }
    drop(std::move(dropped));
    return wasCurrent;
}

bool ProjectCaches::take(Entries::iterator entry, std::vector<std::shared_ptr<Cache>>& dropped) {
    const bool isCurrent = entry->second.cache == currentCache_;
    if (isCurrent) currentCache_ = nullptr;
    dropped.push_back(std::move(entry->second.cache));
    caches_.erase(entry);
    return isCurrent;
}

void ProjectCaches::drop(std::vector<std::shared_ptr<Cache>> dropped) {
    if (dropped.empty()) return;
    dropQueue_.async([dropped = std::move(dropped)]() mutable {
        dropped.clear();
        (void)malloc_trim(0);  // gives the memory back to the system
    });
}

void ProjectCaches::dropLater(std::shared_ptr<Cache> cache) {
    if (!cache) return;
    dropQueue_.async([cache = std::move(cache)]() mutable {
        const bool isLast = cache.use_count() == 1;
        cache.reset();
        if (isLast) (void)malloc_trim(0);
    });
}

void ProjectCaches::noteLeftAt(const Project& project, uint64_t eventId) {
    std::lock_guard lock(cachesAccessLock_);
    const auto found = caches_.find(project.uuid);
    if (found != caches_.end()) found->second.leftAt = eventId;
}

std::optional<uint64_t> ProjectCaches::leftAt(const Project& project) const {
    std::shared_lock lock(cachesAccessLock_);
    const auto found = caches_.find(project.uuid);
    return found == caches_.end() ? std::nullopt : found->second.leftAt;
}

void ProjectCaches::removeAll() {
    // Dropped outside the lock: a Cache that goes may still ask which one is current.
    Entries dropped;
    std::shared_ptr<Cache> current;
    std::lock_guard lock(cachesAccessLock_);
    dropped.swap(caches_);
    current.swap(currentCache_);
}
