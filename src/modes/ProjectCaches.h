#pragma once
#include <memory>
#include <optional>
#include <shared_mutex>
#include <string>
#include <unordered_map>
#include <vector>

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
    /// True if it was the current one; there is none then.
    bool removeCacheForProject(const Project& project);
    /// Those of virtual projects, which go by a path, but for one; the same answer.
    bool removeVirtualProjectsBut(const std::string& path);
    /// Up to which file-system event a Cache was kept current before its project was left.
    void noteLeftAt(const Project& project, uint64_t eventId);
    std::optional<uint64_t> leftAt(const Project& project) const;
    /// All of them, on the caller's thread.
    void removeAll();
    /// Lets go of a reference that may be the last one, on the thread for that.
    void dropLater(std::shared_ptr<Cache> cache);

  private:
    struct Entry {
        std::shared_ptr<Cache> cache;
        std::optional<uint64_t> leftAt;
    };
    using Entries = std::unordered_map<std::string, Entry>;
    /// Inside the lock; dropped later, outside of it.
    bool take(Entries::iterator entry, std::vector<std::shared_ptr<Cache>>& dropped);
    void drop(std::vector<std::shared_ptr<Cache>> dropped);

    IndexObserver& observer_;
    const FileTypes& fileTypes_;
    mutable std::shared_mutex cachesAccessLock_;
    Entries caches_;  // by uuid
    std::shared_ptr<Cache> currentCache_;
    SerialQueue dropQueue_{"cacheDropQ", Qos::background};
};
