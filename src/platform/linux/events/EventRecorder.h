#pragma once
#include <atomic>
#include <ctime>
#include <memory>
#include <mutex>
#include <vector>

#include "platform/FileEvents.h"
#include "platform/linux/events/EventOutbox.h"
#include "platform/linux/events/EventRing.h"
#include "platform/linux/events/EventTranslator.h"
#include "platform/linux/events/MountTable.h"
#include "platform/linux/events/WatchedTree.h"
#include "util/queues/PollThread.h"

/// What all recorders of a run have in common.
struct EventSourceState {
    template <class... Limits>
    explicit EventSourceState(WatchSet::Backends which, size_t events, Limits... limits)
        : budget(limits...), backends(which), ringSize(events) {}

    WatchBudget budget;
    const WatchSet::Backends backends;
    const size_t ringSize;
    std::atomic<uint64_t> lastId = 0;
};

/// Watches some folders on a thread of its own from its making to its end, keeps what happens, and
/// delivers it while somebody wants it.
/// Owner:   a stream, or the source while no stream has been made yet.
/// Threads: main; the callback is called on the recorder's own.
/// Fails:   see WatchedTree.
class EventRecorder {
  public:
    EventRecorder(FileEvents::Request request, std::shared_ptr<EventSourceState> state);
    ~EventRecorder();

    /// Once all watches stand: what came after that id, or that all must be read again, then
    /// HistoryDone if `isReplay`, then what happens.
    void deliver(uint64_t since, bool isReplay, std::function<void(FileEventBatch)> callback);
    /// Waits for a callback that runs. Answers the id after which to go on: `since` if nothing has
    /// been delivered.
    uint64_t pause(uint64_t since);

    SharedFolders unwatchedFolders() const;
    void recheckUnwatched();
    bool isFor(const FileEvents::Request& request) const;

  private:
    void begin();
    void pump();
    void translate(std::vector<RawEvent>& events);
    void followHandle();
    void mountsChanged();
    void mountChanged(const MountTable::Change& change);
    void replay(uint64_t since, bool isReplay);
    void flush();
    void hand(FileEventBatch batch);

    const FileEvents::Request request_;
    const std::shared_ptr<EventSourceState> state_;
    timespec begin_{};
    // Of the thread.
    EventOutbox outbox_;
    EventRing ring_;
    MountTable mounts_;
    std::unique_ptr<WatchedTree> tree_;
    std::unique_ptr<EventTranslator> translator_;
    int handle_ = -1;

    std::mutex deliveryMutex_;  // held while the callback runs
    std::function<void(FileEventBatch)> callback_;
    uint64_t deliveredId_ = 0;  // 0: nothing since deliver
    uint64_t turn_ = 0;         // counts deliver and pause
    mutable std::mutex unwatchedMutex_;
    SharedFolders unwatched_;
    PollThread thread_;  // the last: its end is the first
};
