#pragma once
#include <memory>
#include <mutex>

class ModeHost;
class Project;
class TRVSearchMode;

/// The one way to change the current project.
/// Owner:   AppDelegate. Threads: any but the main thread, which it waits for.
class ProjectSwitcher {
  public:
    ProjectSwitcher(TRVSearchMode& searchMode, ModeHost& host)
        : searchMode_(searchMode), host_(host) {}

    /// Ends the running scan, watches the new project's folders instead of the old one's, and
    /// stores which was and which is current. Null: no project.
    void makeCurrentProject(std::shared_ptr<const Project> project);

  private:
    TRVSearchMode& searchMode_;
    ModeHost& host_;
    std::mutex mutex_;
};
