#pragma once
#include <memory>

#include "index/TouchedFolders.h"
#include "util/FunctionRef.h"

class Cache;
class FsEventClient;
class FsEventHandler;
struct Difference;

/// Processes batches of events, and compares what they touched with the disk until nothing differs:
/// then the index is what a scan would make of these folders, whatever the events left out, merged
/// or mixed up. A folder that will not come to rest is removed and read again. While a first scan
/// is under way nothing is compared; that is made up for later. Owner:   as the handler's. Threads:
/// the handler's queue.
class ClosingComparison {
  public:
    static constexpr int kMaxRounds = 8;

    ClosingComparison(FsEventHandler& handler, FsEventClient& client)
        : handler_(handler), client_(client) {}

    void takeEvents(FileEventBatch events);
    /// Something was touched that has not been compared.
    bool isDue() const { return !touched_.folders.empty(); }
    /// How many rounds found a difference; none in the best case. Between two rounds it leaves the
    /// rest for the next call if there are events that it had better see first.
    int compare(FunctionRef<bool()> moreEventsWait);
    /// The two together.
    int process(FileEventBatch events) {
        takeEvents(std::move(events));
        return compare([] { return false; });
    }

  private:
    void readAnew(const std::vector<Difference>& differences);
    void add(const TouchedFolders& touched);

    FsEventHandler& handler_;
    FsEventClient& client_;
    TouchedFolders touched_;          // and not compared yet
    std::weak_ptr<Cache> touchedOf_;  // the index that this is of
    uint64_t eventId_ = 0;            // of the last event
};
