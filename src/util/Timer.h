#pragma once
#include <ctime>
#include <string>
#include <unordered_map>

#include "util/Clock.h"
#include "util/queues/OperationQueue.h"

/// Named measurements of processor and wall-clock time, for the log.
/// Owner:   World (sharedInstance).
/// Threads: any; the dictionary is touched on "TimerQ" alone, and the caller waits for it.
/// Units:   seconds. The processor time is that of the whole process.
class Timer {
  public:
    enum class Force { no, yes };
    static Timer& sharedInstance();

    /// Begins or begins again. Does nothing unless debugPerformance is on or it is forced.
    void start(const std::string& name, Force force = Force::no);
    /// The wall-clock time since the start, and a line in the log with debugPerformance on; -1.0 if
    /// nothing is measured, 0.0 for a name that was not started.
    double stop(const std::string& name, Force force = Force::no);

  private:
    struct Entry {
        std::clock_t cpu;
        Clock::TimePoint wall;
    };
    std::unordered_map<std::string, Entry> dict_;
    SerialQueue queue_{"TimerQ", Qos::userInteractive};
};
