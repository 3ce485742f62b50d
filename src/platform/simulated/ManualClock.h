#pragma once
#include <atomic>

#include "util/Clock.h"

/// A clock that goes as the real one does until it is moved by hand; from then on it stands.
/// Owner:   World. Threads: any, but advance: main.
class ManualClock : public Clock {
  public:
    TimePoint now() const override;
    std::time_t time() const override;
    void advance(Duration by);

  private:
    std::atomic<bool> stands_ = false;
    std::atomic<Duration::rep> now_ = 0;   // since the epoch of the steady clock
    std::atomic<Duration::rep> time_ = 0;  // the same unit, since the epoch
};
