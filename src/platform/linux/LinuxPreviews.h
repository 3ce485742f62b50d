#pragma once
#include "platform/Previews.h"
#include "platform/linux/DecoderQueue.h"

/// Previews by the decoder program, one process a file.
/// Owner:   main, inside the World. Threads: main; the processes are waited for on "previewQ".
/// Fails:   with a message where the program is missing, takes too long or dies.
class LinuxPreviews : public Previews {
  public:
    explicit LinuxPreviews(std::string program = DecoderQueue::decoderProgram())
        : queue_("previewQ", Qos::userInitiated, std::move(program)) {}
    ~LinuxPreviews() override { cancel(); }
    void request(const Request& request, Answer answer) override;
    void cancel() override {
        if (stale_) *stale_ = true;
    }

  private:
    DecoderQueue::Stale stale_;  // of the last request
    DecoderQueue queue_;
};
