#include "modes/ProjectEventStreams.h"

#include <algorithm>

#include "util/log.h"

namespace {
// On this system a volume may come at any place.
constexpr auto kVolumes = "/";
}  // namespace

ProjectEventStreams::ProjectEventStreams(FileEvents& events, Callback callback)
    : events_(events),
      callback_(std::move(callback)),
      volumesEventStream_(events.streamCreate({.paths = {FileURL(kVolumes)},
                                               .fileEvents = false,
                                               .markSelf = false,
                                               .callback = callback_})) {}

void ProjectEventStreams::start(std::vector<FileURL> paths, uint64_t sinceWhen) {
    end();
    const bool hasVolumes = std::find(paths.begin(), paths.end(), FileURL(kVolumes)) != paths.end();
    eventStream_ = events_.streamCreate(
        {.paths = std::move(paths), .sinceWhen = sinceWhen, .callback = callback_});
    startEventStream();
    if (!hasVolumes) volumesEventStream_->start();
}

void ProjectEventStreams::end() {
    volumesEventStream_->stop();
    stopEventStream();
    eventStream_.reset();
}

void ProjectEventStreams::startEventStream() {
    if (!eventStream_) return;
    eventStream_->start();
    logAt(Debug, "Started event stream at event id %llu",
          static_cast<unsigned long long>(events_.currentEventId()));
}

void ProjectEventStreams::stopEventStream() {
    if (!eventStream_) return;
    eventStream_->stop();
    logAt(Debug, "Stopped event stream at event id %llu",
          static_cast<unsigned long long>(events_.currentEventId()));
}
