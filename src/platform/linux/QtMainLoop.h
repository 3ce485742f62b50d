#pragma once
#include <memory>

#include "util/Clock.h"
#include "util/queues/MainQueue.h"

/// Runs a main queue in Qt's event loop: at once when something comes in, and when a timer of it
/// falls due.
/// Owner:   main, after QApplication and World are made; gone before either. Threads: main; only
///          the queue's wake comes from others.
class QtMainLoop {
  public:
    QtMainLoop(MainQueue& queue, const Clock& clock);
    ~QtMainLoop();
    QtMainLoop(const QtMainLoop&) = delete;
    QtMainLoop& operator=(const QtMainLoop&) = delete;

  private:
    class Receiver;
    struct Doorbell;

    MainQueue& queue_;
    const std::unique_ptr<Receiver> receiver_;
    const std::shared_ptr<Doorbell> doorbell_;  // shared with a wake that is under way
};
