#pragma once
#include <atomic>
#include <cstddef>

/// How many watches this process may still take. The kernel counts a user's watches over all
/// programs; a part is left to the others. A process with the right to it has no limit.
/// Owner:   shared by all streams. Threads: any.
/// Units:   watches; one a folder.
/// Fails:   a limit that cannot be read counts as the kernel's own least one.
class WatchBudget {
  public:
    enum Kind { kFanotify, kInotify, kKinds };
    /// share: of the kernel's limits, as they stand now. unlimited: see hasUnlimitedFanotify().
    WatchBudget(double share, bool unlimited);
    WatchBudget(size_t fanotify, size_t inotify);

    bool take(Kind kind);
    void takeAnyway(Kind kind);
    void giveBack(Kind kind, size_t count = 1);
    size_t room(Kind kind) const;

  private:
    size_t limits_[kKinds];
    std::atomic<size_t> taken_[kKinds] = {0, 0};
};
