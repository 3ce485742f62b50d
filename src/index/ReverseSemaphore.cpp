#include "index/ReverseSemaphore.h"

#include <algorithm>
#include <chrono>

#include "util/log.h"

std::shared_ptr<ReverseSemaphore> ReverseSemaphore::initWithCount(int64_t count) {
    if (count <= 0) {
        logError("Error: Initial count for ReverseSemaphore must be positive.");
        return nullptr;
    }
    return std::shared_ptr<ReverseSemaphore>(new ReverseSemaphore(count));
}

void ReverseSemaphore::signal() {
    std::lock_guard lock(mutex_);
    if (missing_ == 0) {
        logError("ReverseSemaphore signalled too often");
        return;
    }
    if (--missing_ == 0) complete_.notify_all();
}

void ReverseSemaphore::wait() {
    std::unique_lock lock(mutex_);
    complete_.wait(lock, [this] { return missing_ == 0; });
}

bool ReverseSemaphore::waitWithTimeout(double seconds) {
    constexpr double kYear = 365 * 86'400.0;  // as good as for ever, and no clock overflows
    const std::chrono::duration<double> time(std::min(std::max(0.0, seconds), kYear));
    std::unique_lock lock(mutex_);
    return complete_.wait_for(lock, time, [this] { return missing_ == 0; });
}
