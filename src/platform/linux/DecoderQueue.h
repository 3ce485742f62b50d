#pragma once
#include <atomic>
#include <memory>

#include "platform/linux/decoder/DecoderProcess.h"
#include "util/queues/OperationQueue.h"

/// Runs the decoder program in the background, one process at a time.
/// Owner:   LinuxPreviews, LinuxThumbnails; inside the World. Threads: run: any; the end of a run
/// is
///          told on the queue's thread.
/// Fails:   see DecoderProcess; a program that is missing was not started.
class DecoderQueue {
  public:
    /// Set where nobody wants the answer any more.
    using Stale = std::shared_ptr<std::atomic<bool>>;
    /// Called once, unless it went stale before.
    using Then = std::function<void(const DecoderProcess::Outcome&)>;

    DecoderQueue(std::string label, Qos qos, std::string program);
    void run(const Stale& stale, DecoderProcess::Run run, Then then);

    /// Where the program is: beside this one, or where packages put it; empty: nowhere.
    static std::string decoderProgram();

  private:
    const std::string program_;
    DecoderProcess process_;  // on the queue's thread
    OperationQueue queue_;
};
