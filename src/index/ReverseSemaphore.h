#pragma once
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>

/// Waits for a known number of signals, each expected exactly once.
/// Owner:   whoever expects them; shared with those who signal. Threads: any.
/// Fails:   a count that is not positive gives nothing, and a line in the log. A signal beyond the
///          count is an error of the program: logged, without effect.
class ReverseSemaphore {
  public:
    static std::shared_ptr<ReverseSemaphore> initWithCount(int64_t count);

    void signal();
    void wait();
    /// Seconds; negative counts as 0. True if all signals came in time.
    bool waitWithTimeout(double seconds);

  private:
    explicit ReverseSemaphore(int64_t count) : missing_(count) {}

    std::mutex mutex_;
    std::condition_variable complete_;
    int64_t missing_;
};
