#include "modes/ProjectCaches.h"

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
    return found == caches_.end() ? nullptr : found->second;
}

bool ProjectCaches::setCurrentCacheByProject(const Project& project) {
    std::lock_guard lock(cachesAccessLock_);
    auto& cache = caches_[project.uuid];
    const bool existed = cache != nullptr;
    if (!existed) cache = std::make_shared<Cache>(observer_, fileTypes_);
    logInfo("%s cache: Project: %s; Cache %p", existed ? "Re-using" : "Creating new",
            project.name.c_str(), static_cast<void*>(cache.get()));
    currentCache_ = cache;
    return existed;
}

void ProjectCaches::removeCacheForProject(const Project& project) {
    std::shared_ptr<Cache> dropped;
    {
        std::lock_guard lock(cachesAccessLock_);
        const auto found = caches_.find(project.uuid);
        if (found == caches_.end()) return;
        logInfo("Deleting cache: Project: %s; Cache %p", project.name.c_str(),
                static_cast<void*>(found->second.get()));
        dropped = std::move(found->second);
        caches_.erase(found);
        if (currentCache_ == dropped) currentCache_ = nullptr;
    }
    dropQueue_.async([dropped = std::move(dropped)]() mutable { dropped.reset(); });
}

void ProjectCaches::removeAll() {
    // Dropped outside the lock: a Cache that goes may still ask which one is current.
    std::unordered_map<std::string, std::shared_ptr<Cache>> dropped;
    std::shared_ptr<Cache> current;
    std::lock_guard lock(cachesAccessLock_);
    dropped.swap(caches_);
    current.swap(currentCache_);
}
