#include "platform/simulated/ManualClock.h"

using namespace std::chrono;

Clock::TimePoint ManualClock::now() const {
    return stands_ ? TimePoint(Duration(now_)) : Clock::now();
}

std::time_t ManualClock::time() const {
    return stands_ ? duration_cast<seconds>(Duration(time_)).count() : Clock::time();
}

void ManualClock::advance(Duration by) {
    if (!stands_) {
        now_ = Clock::now().time_since_epoch().count();
        time_ = duration_cast<Duration>(seconds(Clock::time())).count();
        stands_ = true;
    }
    now_ += by.count();
    time_ += by.count();
}
