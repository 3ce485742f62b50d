#pragma once
#include <cstdint>
#include <functional>

#include "util/Relaxed.h"

/// What keeps the window from going: questions that stand in front of it, and authorisation
/// dialogs of the desktop.
/// Owner:   AppDelegate. Threads: counts on any; authorisation: any.
class HidingGuard {
  public:
    /// focus gives the search field the keyboard; main thread.
    explicit HidingGuard(std::function<void()> focus) : focusOnSearchField_(std::move(focus)) {}

    /// While the count is not 0, the window comes back when it is hidden, and the search field
    /// takes no keys.
    void preventHiding() { preventHidingCount_.add(1); }
    void allowHiding() { preventHidingCount_.add(-1); }
    void performBlockPreventingHiding(const std::function<void()>& block);
    bool isHidingPrevented() const { return preventHidingCount_ > 0; }

    /// Meanwhile closing the window does nothing.
    void willPerformAuthorization() { authorizationInProgress_ = true; }
    void didPerformAuthorization();
    bool authorizationInProgress() const { return authorizationInProgress_; }

  private:
    const std::function<void()> focusOnSearchField_;
    Relaxed<int64_t> preventHidingCount_ = 0;
    Relaxed<bool> authorizationInProgress_ = false;
};
