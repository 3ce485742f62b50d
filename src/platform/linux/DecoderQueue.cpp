#include "platform/linux/DecoderQueue.h"

#include <unistd.h>

#include "util/programFolder.h"

namespace {

class DecoderOperation : public Operation {
  public:
    explicit DecoderOperation(std::function<void(const Operation&)> work)
        : work_(std::move(work)) {}
    void main() override { work_(*this); }

  private:
    const std::function<void(const Operation&)> work_;
};

}  // namespace

DecoderQueue::DecoderQueue(std::string label, Qos qos, std::string program)
    : program_(std::move(program)), queue_(std::move(label), 1, qos) {}

std::string DecoderQueue::decoderProgram() {
    const FileURL folder = programFolder();
    if (folder.empty()) return {};
    for (const char* place : {"trovast-preview", "../libexec/trovast/trovast-preview"}) {
        const FileURL program = folder.appending(place);
        if (access(program.c_str(), X_OK) == 0) return program.path();
    }
    return {};
}

void DecoderQueue::run(const Stale& stale, DecoderProcess::Run run, Then then) {
    if (!program_.empty()) run.arguments.insert(run.arguments.begin(), program_);
    queue_.addOperation(std::make_shared<DecoderOperation>(
        [this, stale, run = std::move(run), then = std::move(then)](const Operation& operation) {
            if (*stale) return;
            const auto isCancelled = [&] { return *stale || operation.isCancelled(); };
            const auto outcome =
                program_.empty() ? DecoderProcess::Outcome() : process_.run(run, isCancelled);
            if (outcome.end != DecoderProcess::End::cancelled) then(outcome);
        }));
}
