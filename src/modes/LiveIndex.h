#pragma once
#include <condition_variable>
#include <mutex>
#include <optional>
#include <string>

#include "index/ClosingComparison.h"
#include "index/FsEventClient.h"
#include "index/FsEventHandler.h"
#include "util/Clock.h"
#include "util/Observable.h"
#include "util/Relaxed.h"
#include "util/queues/OperationQueue.h"

class FileTypes;
class TRVMarkedItemsMode;
class TRVSearchMode;

/// Keeps the index of the current project equal to the disk: batches of file-system events go
/// through here, one after another.
/// Owner:   TRVSearchMode, which ends its queue before anything that the queue uses.
/// Threads: process and scheduleResultListUpdate: any.
class LiveIndex : private FsEventClient {
  public:
    LiveIndex(TRVSearchMode& searchMode, TRVMarkedItemsMode& marks, const FileTypes& types);

    /// What an event stream delivers.
    void process(FileEventBatch batch);
    void waitUntilAllOperationsAreFinished() { fsEventQ_.waitUntilAllOperationsAreFinished(); }
    /// Comparisons that rest are given up; before the application goes.
    void endWork();
    /// After a change of the index that no event caused: whoever sees a list of files sees it anew.
    void scheduleResultListUpdate();

  private:
    std::shared_ptr<const Project> currentProject() const override;
    std::shared_ptr<Cache> cacheForEvents() override;
    void clearSelection(const FileURL& eventURL) override;
    void itemRenamedFrom(const FileURL& from, const FileURL& to,
                         const ItemRenamed& renamed) override;
    void reloadResultSet() override;
    void updateRowRepresentingURL(const FileURL& url) override;
    void takeDebugFsEventPath();
    // On fsEventQ.
    void compareWhenDue();
    void rest(Clock::Duration time);

    TRVSearchMode& searchMode_;
    TRVMarkedItemsMode& marks_;
    FsEventHandler handler_;        // fsEventQ's
    ClosingComparison comparison_;  // too
    Relaxed<int64_t> waitingBatches_ = 0;
    Relaxed<bool> isEnding_ = false;
    std::mutex restMutex_;
    std::condition_variable restEnds_;
    bool rests_ = false;                              // fsEventQ's
    std::optional<Clock::TimePoint> firstTouchedAt_;  // too
    // The pauses between comparisons: real time, and work that "settled" waits for.
    SerialQueue restQ_{"fsEventRestQ", Qos::background};
    OperationQueue fsEventQ_{"fsEventQ", 1, Qos::background};
    Subscription debugFsEventPath_;
};
