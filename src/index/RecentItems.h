#pragma once
#include <cstdint>
#include <ctime>
#include <optional>
#include <shared_mutex>
#include <vector>

#include "util/FileURL.h"

struct RecentItem {
    FileURL url;
    uint64_t inode;
    uint8_t type;    // 1 a file or bundle, 2 anything else
    uint8_t change;  // 1 created, 2 modified, 4 renamed
    std::time_t timestamp;
};

/// What changed lately in one project, newest first; one record a path or inode.
/// Owner:   Cache. Threads: any; may be called inside a section, never the other way round.
/// Units:   timestamps in seconds.
class RecentItems {
  public:
    /// A record with the same path or the same inode makes way. What is beyond maxCount goes.
    void add(RecentItem item, int64_t maxCount);
    /// True if the record of from itself was among them.
    bool rename(const FileURL& from, const FileURL& to);
    void removeBelow(const FileURL& url);
    std::optional<size_t> indexOf(const FileURL& url) const;
    std::vector<RecentItem> items(int64_t maxCount) const;

  private:
    mutable std::shared_mutex mutex_;
    std::vector<RecentItem> items_;
};
