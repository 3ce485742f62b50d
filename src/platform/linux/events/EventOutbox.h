#pragma once
#include <atomic>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/FileEvents.h"

/// Collects events, numbers them and cuts them into batches.
/// Owner:   a recorder. Threads: one at a time; the counter is shared by all.
class EventOutbox {
  public:
    explicit EventOutbox(std::atomic<uint64_t>& lastId) : lastId_(lastId) {}
    /// A change of content or attributes that the batch tells already is left out.
    void put(uint32_t flags, std::string path);
    /// What comes next is a batch of its own: halves of renames must not meet strangers.
    void cut();
    std::vector<FileEventBatch> take();

  private:
    std::atomic<uint64_t>& lastId_;
    std::vector<FileEventBatch> batches_;
    FileEventBatch open_;
    // What was told of a path since the last event that is more than a change of an item.
    std::unordered_map<std::string, uint32_t> changed_;
};
