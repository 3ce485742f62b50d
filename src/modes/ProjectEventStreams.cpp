#include "modes/ProjectEventStreams.h"

#include <algorithm>

#include "datatypes/Project.h"
#include "modes/FoldersOfInterest.h"
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

FileEvents::Request ProjectEventStreams::requestFor(const std::shared_ptr<const Project>& project) {
    std::vector<FileURL> paths;
    for (const auto& folder : project->sorderFoldersDesc()) paths.push_back(folder->url);
    const auto interest = std::make_shared<const FoldersOfInterest>(project);
    return {.paths = std::move(paths),
            .shouldWatch = [interest](std::string_view path) { return interest->contains(path); },
            .callback = callback_};
}

uint64_t ProjectEventStreams::startRecording(const std::shared_ptr<const Project>& project) {
    const uint64_t id = events_.currentEventId();
    events_.startRecording(requestFor(project));
    return id;
}

void ProjectEventStreams::start(const std::shared_ptr<const Project>& project, uint64_t sinceWhen) {
    end();
    FileEvents::Request request = requestFor(project);
    request.sinceWhen = sinceWhen;
    const bool hasVolumes = std::find(request.paths.begin(), request.paths.end(),
                                      FileURL(kVolumes)) != request.paths.end();
    eventStream_ = events_.streamCreate(std::move(request));
    startEventStream();
    if (!hasVolumes) volumesEventStream_->start();
}

SharedFolders ProjectEventStreams::unwatchedFolders() const {
    return eventStream_ ? eventStream_->unwatchedFolders() : nullptr;
}

void ProjectEventStreams::recheckUnwatched() {
    if (eventStream_) eventStream_->recheckUnwatched();
}

void ProjectEventStreams::end() {
    volumesEventStream_->stop();
    stopEventStream();
    eventStream_.reset();
}

void ProjectEventStreams::close() {
    if (volumesEventStream_) end();
    volumesEventStream_.reset();
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
