#pragma once
#include <functional>
#include <memory>
#include <optional>
#include <shared_mutex>

#include "util/Observable.h"

class DiskAccess;
class DiskAccessView;
class RepeatingTimer;

/// The gate at launch: whether the desktop lets the program read all files, and the window that
/// waits until the user has let it or wants to go on without.
/// Owner:   AppDelegate. Threads: enabled and the signal: any; the rest main.
class FullDiskAccess {
  public:
    FullDiskAccess(DiskAccess& access, DiskAccessView& view);
    ~FullDiskAccess();

    /// Asks now. A change of the answer is told.
    bool enabled();
    /// The new answer; nothing: it is not known any more.
    Signal<std::optional<bool>>& changed() { return changed_; }

    /// Calls one of the two blocks, once: at once where the access is there, else when it comes or
    /// the user goes on without.
    void runFullDiskAccessCheckWithOkBlock(std::function<void()> okBlock,
                                           std::function<void()> skipBlock);

  private:
    void tick();

    DiskAccess& access_;
    DiskAccessView& view_;
    std::shared_mutex mutex_;
    std::optional<bool> lastAnswer_;
    Signal<std::optional<bool>> changed_;

    bool skip_ = false;
    std::function<void()> okBlock_, skipBlock_;
    std::unique_ptr<RepeatingTimer> timer_;
};
