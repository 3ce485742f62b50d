#include "platform/linux/events/LinuxFileEvents.h"

#include "platform/linux/events/EventRecorder.h"

namespace {

class LinuxFileEventStream : public FileEventStream {
  public:
    LinuxFileEventStream(FileEvents::Request request, std::shared_ptr<EventSourceState> state,
                         std::unique_ptr<EventRecorder> recorder)
        : request_(std::move(request)), state_(std::move(state)), recorder_(std::move(recorder)) {}

    void start() override {
        if (isStarted_) return;
        isStarted_ = true;
        const bool isFirst = !wasStopped_;
        const bool fromNow = isFirst && request_.sinceWhen == FileEvents::kSinceNow;
        if (fromNow)
            since_ = state_->lastId;
        else if (isFirst)
            since_ = request_.sinceWhen;
        if (!recorder_) recorder_ = std::make_unique<EventRecorder>(request_, state_);
        recorder_->deliver(since_, !fromNow, request_.callback);
    }

    void stop() override {
        if (!isStarted_) return;
        isStarted_ = false;
        wasStopped_ = true;
        since_ = recorder_->pause(since_);
    }

    SharedFolders unwatchedFolders() const override {
        return recorder_ ? recorder_->unwatchedFolders() : nullptr;
    }
    void recheckUnwatched() override {
        if (recorder_) recorder_->recheckUnwatched();
    }

  private:
    const FileEvents::Request request_;
    const std::shared_ptr<EventSourceState> state_;
    std::unique_ptr<EventRecorder> recorder_;
    uint64_t since_ = 0;
    bool isStarted_ = false;
    bool wasStopped_ = false;
};

std::shared_ptr<EventSourceState> makeState(const LinuxFileEvents::Options& options) {
    const size_t ring = options.ringSize;
    if (const auto& most = options.mostWatches)
        return std::make_shared<EventSourceState>(options.backends, ring, *most, *most);
    const bool unlimited = options.backends == WatchSet::Backends::best && hasUnlimitedFanotify();
    return std::make_shared<EventSourceState>(options.backends, ring, options.share, unlimited);
}

}  // namespace

LinuxFileEvents::LinuxFileEvents(const Options& options) : state_(makeState(options)) {}

LinuxFileEvents::~LinuxFileEvents() = default;

std::unique_ptr<FileEventStream> LinuxFileEvents::streamCreate(Request request) {
    std::unique_ptr<EventRecorder> recorder;
    if (recorder_ && recorder_->isFor(request)) recorder = std::move(recorder_);
    return std::make_unique<LinuxFileEventStream>(std::move(request), state_, std::move(recorder));
}

void LinuxFileEvents::startRecording(Request request) {
    recorder_.reset();
    recorder_ = std::make_unique<EventRecorder>(std::move(request), state_);
}

uint64_t LinuxFileEvents::currentEventId() const {
    return state_->lastId;
}
