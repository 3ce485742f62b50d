#pragma once
#include <chrono>
#include <ctime>

/// Time as the program sees it, so that a test can move it.
/// Threads: any.
class Clock {
  public:
    using TimePoint = std::chrono::steady_clock::time_point;
    using Duration = std::chrono::steady_clock::duration;
    virtual ~Clock() = default;
    /// For intervals and timers; never goes back.
    virtual TimePoint now() const { return std::chrono::steady_clock::now(); }
    /// Whole seconds since the epoch; may be set back by the user.
    virtual std::time_t time() const { return std::time(nullptr); }
};
