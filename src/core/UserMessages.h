#pragma once
#include <functional>
#include <string>

#include "screen/InfoBarView.h"
#include "util/queues/MainQueue.h"

/// The one channel for short messages: they stand in the info bar for a while, a newer one cuts off
/// the older, and then the bar shows the mode's own text again.
/// Owner:   AppDelegate. Threads: error and info from any, the rest main.
class UserMessages {
  public:
    /// beep is called with each error; main thread.
    UserMessages(InfoBarView& bar, std::function<void()> beep)
        : bar_(bar), beep_(std::move(beep)) {}

    void error(const std::string& text);
    void info(const std::string& text);
    void beep() const { beep_(); }
    /// What the bar shows when no message stands in it.
    void setRestingText(const std::string& text, const std::string& toolTip);

  private:
    void show(const std::string& text, bool isError, Clock::Duration duration);

    InfoBarView& bar_;
    const std::function<void()> beep_;
    std::string restingText_, restingToolTip_;
    OneShotTimer timer_;
};
