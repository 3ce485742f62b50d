#pragma once
#include <memory>
#include <shared_mutex>
#include <string>
#include <unordered_map>

#include "index/Cache.h"
#include "util/queues/OperationQueue.h"

class FileTypes;
class Project;

/// One Cache a project in use, and which of them is current. A project that is left keeps its
/// Cache, so that coming back to it is immediate.
/// Owner:   TRVSearchMode. Threads: any. A Cache that is dropped is taken apart on a thread of its
///          own: millions of items take their time.
class ProjectCaches {
  public:
    ProjectCaches(IndexObserver& observer, const FileTypes& fileTypes)
        : observer_(observer), fileTypes_(fileTypes) {}

    std::shared_ptr<Cache> currentCache() const;
    std::shared_ptr<Cache> cacheForProject(const Project& project) const;
    /// Makes the project's Cache the current one, a new one if there is none; true if there was.
    bool setCurrentCacheByProject(const Project& project);
    void removeCacheForProject(const Project& project);
    /// All of them, on the caller's thread.
    void removeAll();

  private:
    IndexObserver& observer_;
    const FileTypes& fileTypes_;
    mutable std::shared_mutex cachesAccessLock_;
    std::unordered_map<std::string, std::shared_ptr<Cache>> caches_;
    std::shared_ptr<Cache> currentCache_;
    SerialQueue dropQueue_{"cacheDropQ", Qos::background};
};
