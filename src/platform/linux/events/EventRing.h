#pragma once
#include <deque>
#include <optional>
#include <vector>

#include "platform/FileEvents.h"

/// The last events of a recorder, for who comes later.
/// Owner:   an EventRecorder. Threads: one at a time.
/// Units:   events; whole batches are kept or dropped.
/// Fails:   what is older than it holds is not there: see since().
class EventRing {
  public:
    /// Holds all events with an id above `firstId`, until there are more than `most`.
    EventRing(uint64_t firstId, size_t most) : lostId_(firstId), most_(most) {}
    void append(const FileEventBatch& batch);
    /// What came after that id, in its batches. Nothing if not all of it is here.
    std::optional<std::vector<FileEventBatch>> since(uint64_t id) const;

  private:
    std::deque<FileEventBatch> batches_;
    size_t count_ = 0;
    uint64_t lostId_;  // of the last event that is not here
    const size_t most_;
};
