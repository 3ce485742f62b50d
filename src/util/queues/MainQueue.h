#pragma once
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include "util/Clock.h"

/// Work for the main thread: blocks in the order they came, and blocks that fall due at a time. It
/// runs no loop of its own: whoever owns the main thread's loop (Qt, the console, a test) is told
/// by the wake closure that there is something and then calls runPending().
/// Owner:   World; made on the main thread.
/// Threads: async and sync from any; the rest from the main thread. What waits when the queue is
///          closed is dropped, and sync returns then without having run its block.
class MainQueue {
  public:
    using Block = std::function<void()>;
    using TimerId = unsigned long;

    explicit MainQueue(const Clock& clock);

    /// On World's main queue. sync runs the block at once when already on the main thread; it must
    /// not be called inside a section (the main thread may be waiting for one).
    static void async(Block block);
    static void sync(Block block);
    static bool isMainThread();

    /// Runs what is waiting now and what is due; what these add waits for the next call. Answers
    /// whether anything ran.
    bool runPending();
    /// When the next timer is due, if there is one.
    std::optional<Clock::TimePoint> nextDue() const;
    bool isIdle(Clock::Duration horizon) const;
    /// wake is called on any thread, outside the lock, whenever there is something new to run.
    void setWake(Block wake);
    void close();

    /// Runs the block once at or after the time.
    TimerId runAt(Clock::TimePoint time, Block block);
    void cancel(TimerId timer);

  private:
    struct Due {
        Clock::TimePoint time;
        TimerId id;
        Block block;
    };
    void add(Block block);
    void addAndWait(const Block& block);

    const Clock& clock_;
    const std::thread::id thread_ = std::this_thread::get_id();
    mutable std::mutex mutex_;
    std::deque<Block> blocks_;
    std::vector<Due> timers_;  // few: kept unordered
    TimerId lastTimer_ = 0;
    bool running_ = false;
    bool closed_ = false;
    Block wake_;
};

/// A block that runs again and again on the main thread, first after one interval. Ends with its
/// owner, also from inside the block. Main thread.
class RepeatingTimer {
  public:
    RepeatingTimer(Clock::Duration interval, MainQueue::Block block);
    ~RepeatingTimer();
    RepeatingTimer(const RepeatingTimer&) = delete;
    RepeatingTimer& operator=(const RepeatingTimer&) = delete;
    /// Runs the block now; the next run is one interval from here.
    void fire();

  private:
    void schedule();

    const Clock::Duration interval_;
    const std::shared_ptr<const MainQueue::Block> block_;  // shared with the run that ends this
    MainQueue::TimerId timer_ = 0;
};

/// A block that runs once on the main thread unless it is stopped or started again before.
class OneShotTimer {
  public:
    OneShotTimer() = default;
    ~OneShotTimer() { stop(); }
    OneShotTimer(const OneShotTimer&) = delete;
    OneShotTimer& operator=(const OneShotTimer&) = delete;
    void start(Clock::Duration delay, MainQueue::Block block);
    void stop();
    bool isRunning() const { return timer_ != 0; }

  private:
    MainQueue::TimerId timer_ = 0;
};
