#pragma once
#include <sys/types.h>

#include <chrono>
#include <string>
#include <vector>

#include "util/FunctionRef.h"

/// Runs the decoder program once: writes the request to it, reads what it answers, and ends it when
/// it takes too long or says too much.
/// Owner:   a queue's work. Threads: one at a time; waits for at most the time limit.
/// Fails:   by the outcome. A process that cannot even be killed, since it waits for a disk that
///          does not answer, is left behind and looked for again at the next run.
class DecoderProcess {
  public:
    struct Run {
        std::vector<std::string> arguments = {};  // the first: the program
        std::string input = {};
        std::chrono::milliseconds limit{5000};
        size_t mostBytes = 0;
    };
    /// Asked many times a second.
    using IsCancelled = FunctionRef<bool()>;
    /// tookTooLong: by the clock, as may happen when the computer is busy; usedUp: all the
    /// processor time that the program gave itself.
    enum class End { complete, tookTooLong, usedUp, saidTooMuch, died, cancelled, notStarted };
    struct Outcome {
        End end = End::notStarted;
        std::string output = {};
    };
    ~DecoderProcess() { reap(); }
    Outcome run(const Run& run, IsCancelled isCancelled);

  private:
    End read(int from, const Run& run, IsCancelled isCancelled, std::string& output) const;
    End end(pid_t process, End so);
    void reap();

    std::vector<pid_t> left_;  // killed, not gone yet
};
