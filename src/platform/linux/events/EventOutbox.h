#pragma once
#include <atomic>
#include <string>
#include <unordered_set>
#include <vector>

#include "platform/FileEvents.h"

/// Collects events, numbers them and cuts them into batches.
/// Owner:   a recorder. Threads: one at a time; the counter is shared by all.
class EventOutbox {
  public:
    explicit EventOutbox(std::atomic<uint64_t>& lastId) : lastId_(lastId) {}
    /// A Modified event that says again what the batch says already is left out.
    void put(uint32_t flags, std::string path);
    /// What comes next is a batch of its own: halves of renames must not meet strangers.
    void cut();
    std::vector<FileEventBatch> take();

  private:
    std::atomic<uint64_t>& lastId_;
    std::vector<FileEventBatch> batches_;
    FileEventBatch open_;
    std::unordered_set<std::string> modified_;  // since the last event of another kind
};
