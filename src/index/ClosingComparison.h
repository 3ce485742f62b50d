#pragma once
#include <memory>

#include "index/TouchedFolders.h"

class Cache;
class FsEventClient;
class FsEventHandler;
struct Difference;

/// Processes batches of events, and after each one compares what it touched with the disk until
/// nothing differs: then the index is what a scan would make of these folders, whatever the events
/// left out, merged or mixed up. A folder that will not come to rest is removed and read again.
/// While a first scan is under way nothing is compared; that is made up for with the next batch.
/// Owner:   as the handler's. Threads: the handler's queue.
class ClosingComparison {
  public:
    static constexpr int kMaxRounds = 8;

    ClosingComparison(FsEventHandler& handler, FsEventClient& client)
        : handler_(handler), client_(client) {}

    /// How many rounds found a difference; none in the best case.
    int process(FileEventBatch events);

  private:
    int compare(TouchedFolders touched, uint64_t eventId);
    void readAnew(const std::vector<Difference>& differences, uint64_t eventId);

    FsEventHandler& handler_;
    FsEventClient& client_;
    TouchedFolders postponed_;
    std::weak_ptr<Cache> postponedOf_;
};
