#include "platform/linux/events/WatchBudget.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>

#include "util/FileIO.h"

namespace {

size_t limitFrom(const char* path) {
    constexpr size_t kLeast = 8192;
    const FileHandle file(open(path, O_RDONLY | O_CLOEXEC));
    char digits[32] = {};
    if (!file || read(file.get(), digits, sizeof digits - 1) <= 0) return kLeast;
    const long long value = std::atoll(digits);
    return value > 0 ? static_cast<size_t>(value) : kLeast;
}

size_t part(size_t limit, double share) {
    return static_cast<size_t>(static_cast<double>(limit) * share);
}

}  // namespace

WatchBudget::WatchBudget(double share, bool unlimited)
    : WatchBudget(
          unlimited ? ~size_t{0} : part(limitFrom("/proc/sys/fs/fanotify/max_user_marks"), share),
          part(limitFrom("/proc/sys/fs/inotify/max_user_watches"), share)) {}

WatchBudget::WatchBudget(size_t fanotify, size_t inotify) : limits_{fanotify, inotify} {}

bool WatchBudget::take(Kind kind) {
    if (taken_[kind].fetch_add(1, std::memory_order_relaxed) < limits_[kind]) return true;
    giveBack(kind);
    return false;
}

void WatchBudget::takeAnyway(Kind kind) {
    taken_[kind].fetch_add(1, std::memory_order_relaxed);
}

void WatchBudget::giveBack(Kind kind, size_t count) {
    taken_[kind].fetch_sub(count, std::memory_order_relaxed);
}

size_t WatchBudget::room(Kind kind) const {
    const size_t taken = taken_[kind].load(std::memory_order_relaxed);
    return taken < limits_[kind] ? limits_[kind] - taken : 0;
}
