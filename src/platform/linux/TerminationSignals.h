#pragma once
#include <functional>
#include <memory>

/// Ends the program in order when the session or a user asks it to by a signal (SIGTERM, SIGINT,
/// SIGHUP), instead of in the middle of whatever it does.
/// Owner:   main, one at a time. Threads: main.
/// Fails:   silently: the signals then end the program at once.
class TerminationSignals {
  public:
    /// quit is called in Qt's event loop.
    explicit TerminationSignals(std::function<void()> quit);
    ~TerminationSignals();
    TerminationSignals(const TerminationSignals&) = delete;
    TerminationSignals& operator=(const TerminationSignals&) = delete;

  private:
    class Notifier;
    std::unique_ptr<Notifier> notifier_;
};
