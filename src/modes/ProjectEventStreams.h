#pragma once
#include <memory>
#include <string>
#include <vector>

#include "platform/FileEvents.h"

class Project;

/// The two streams of file-system events that Search mode listens to: of the current project's
/// folders, and of the places where volumes come and go.
/// Owner:   TRVSearchMode. Threads: main; the callback on the source's.
class ProjectEventStreams {
  public:
    using Callback = std::function<void(FileEventBatch)>;

    ProjectEventStreams(FileEvents& events, Callback callback);
    /// What happens in the project from now on is kept for its stream; the id to begin it with.
    uint64_t startRecording(const std::shared_ptr<const Project>& project);
    /// The project's stream, from an id on; the one before ends.
    void start(const std::shared_ptr<const Project>& project, uint64_t sinceWhen);
    /// Folders that get no events, and a new look at them.
    SharedFolders unwatchedFolders() const;
    void recheckUnwatched();
    /// Ends the project's stream; that of the volumes rests.
    void end();
    /// Both streams go, for good.
    void close();
    /// The project's stream runs.
    bool isRunning() const { return eventStream_ != nullptr; }
    void startEventStream();
    void stopEventStream();

  private:
    FileEvents::Request requestFor(const std::shared_ptr<const Project>& project);

    FileEvents& events_;
    const Callback callback_;
    std::unique_ptr<FileEventStream> eventStream_, volumesEventStream_;
};
