#include "platform/linux/LinuxPreviews.h"

#include "platform/linux/decoder/PreviewMessage.h"
#include "util/queues/MainQueue.h"

namespace {

using End = DecoderProcess::End;
constexpr std::chrono::milliseconds kLimit{6000};

Preview previewFrom(const DecoderProcess::Outcome& outcome, uint32_t pixels) {
    if (outcome.end == End::complete)
        if (auto preview = previewMessage::decode(outcome.output, pixels))
            return *std::move(preview);
    Preview preview;
    switch (outcome.end) {
        case End::tookTooLong:
        case End::usedUp:
            preview.message = "It takes too long to look into this.";
            break;
        case End::notStarted:
            preview.message = "Previews are not available: a part of the program is missing.";
            break;
        default:
            preview.message = "It cannot be shown: looking into it failed.";
            break;
    }
    return preview;
}

}  // namespace

void LinuxPreviews::request(const Request& request, Answer answer) {
    cancel();
    stale_ = std::make_shared<std::atomic<bool>>(false);
    queue_.run(stale_,
               {.arguments = {"preview", std::to_string(request.pixels)},
                .input = request.url.path(),
                .limit = kLimit,
                .mostBytes = previewMessage::mostBytes(request.pixels)},
               [stale = stale_, answer = std::move(answer),
                pixels = request.pixels](const DecoderProcess::Outcome& outcome) {
                   MainQueue::async([stale, answer, preview = previewFrom(outcome, pixels)] {
                       if (!*stale) answer(preview);
                   });
               });
}
