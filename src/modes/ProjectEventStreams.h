#pragma once
#include <memory>
#include <string>
#include <vector>

#include "platform/FileEvents.h"

/// The two streams of file-system events that Search mode listens to: of the current project's
/// folders, and of the places where volumes come and go.
/// Owner:   TRVSearchMode. Threads: main; the callback on the source's.
class ProjectEventStreams {
  public:
    using Callback = std::function<void(FileEventBatch)>;

    ProjectEventStreams(FileEvents& events, Callback callback);
    /// The project's stream, from an id on; the one before ends.
    void start(std::vector<FileURL> paths, uint64_t sinceWhen);
    /// Ends the project's stream; that of the volumes rests.
    void end();
    void startEventStream();
    void stopEventStream();

  private:
    FileEvents& events_;
    const Callback callback_;
    std::unique_ptr<FileEventStream> eventStream_, volumesEventStream_;
};
