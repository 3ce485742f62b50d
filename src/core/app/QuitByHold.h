#pragma once
#include <functional>
#include <memory>

#include "screen/KeyEvent.h"
#include "util/queues/MainQueue.h"

class QuitProgressView;

/// Ctrl+Q ends the program only when it is held for a second; a small window shows how long still.
/// Sees each key event before the windows do.
/// Owner:   AppDelegate. Threads: main.
class QuitByHold {
  public:
    QuitByHold(KeyEvents& keys, QuitProgressView& view, std::function<void()> terminate);
    ~QuitByHold();

    /// True: the event goes no further.
    bool sendEvent(const KeyEvent& event);

  private:
    void initiateCustomQuitSequence();
    void cancelCustomQuitSequence();
    void confirmApplicationQuit();
    void finalizeCustomQuitSequenceAndTerminate();

    KeyEvents& keys_;
    QuitProgressView& view_;
    const std::function<void()> terminate_;
    bool isCmdQDown_ = false;
    Clock::TimePoint cmdQPressStartTime_;
    OneShotTimer quitConfirmationTimer_;
    std::unique_ptr<RepeatingTimer> progressUpdateTimer_;
};
