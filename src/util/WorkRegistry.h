#pragma once
#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

/// Something that runs work of its own: a queue, the main queue's timers. Registers itself for as
/// long as it lives.
class WorkSource {
  public:
    virtual ~WorkSource() = default;
    /// Nothing waits and nothing runs. Any thread.
    virtual bool isIdle() const = 0;
    /// Takes no more work, drops what has not begun, waits for what has. Not from its own threads.
    virtual void drain() = 0;
    virtual const std::string& label() const = 0;
};

/// Every queue there is, so that "settled" has one answer and shutdown ends all work before the
/// objects that the work uses.
/// Owner:   World. Threads: any.
class WorkRegistry {
  public:
    void add(WorkSource* source);
    /// Waits for a drain of this source that has begun.
    void remove(WorkSource* source);
    /// All sources, one after another: work that is handed on between them meanwhile can be missed.
    /// workTaken() before and after, being the same, says that there was none.
    bool isIdle() const;
    std::vector<std::string> busyLabels() const;
    /// Newest first: what was made later may feed what was made earlier.
    void drainAll();

    /// Each source tells when it takes work.
    void noteWorkTaken() { workTaken_++; }
    uint64_t workTaken() const { return workTaken_; }

  private:
    struct Entry {
        WorkSource* source;
        bool drained = false;
    };
    mutable std::mutex mutex_;
    std::condition_variable drainOver_;
    std::vector<Entry> entries_;
    const WorkSource* draining_ = nullptr;
    std::atomic<uint64_t> workTaken_ = 0;
};
