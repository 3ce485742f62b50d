#pragma once
#include <functional>
#include <memory>
#include <vector>

#include "util/Observable.h"
#include "util/queues/OperationQueue.h"

class GlobalHotKey;
class ModeHost;
class Project;
class ProjectSwitcher;
class SearchFieldController;
class SearchWindowController;
class StatusItem;
class TRVSearchMode;

/// What a change of a setting, or of the program's state, sets off: one line each.
/// Owner:   AppDelegate; from stage two of the launch on. Threads: main.
class SettingsObservers {
  public:
    struct Parts {
        ModeHost& host;
        TRVSearchMode& searchMode;
        ProjectSwitcher& projects;
        SearchFieldController& field;
        SearchWindowController& window;
        StatusItem& statusItem;
        GlobalHotKey& hotKey;
    };
    explicit SettingsObservers(const Parts& parts);

    /// Of effect only while the window may change its size.
    void observeMaximized();
    void observeProcessMetadata();
    void observeTheRest();

  private:
    void observe(const char* key, std::function<void()> effect);
    void projectsChanged();
    void postSearchParameterModified(std::shared_ptr<const Project> project);
    /// Any thread but the main one.
    void searchParameterModified(const std::shared_ptr<const Project>& project);
    void searchAgain();

    const Parts parts_;
    SerialQueue notificationQueue_{"notifications", Qos::userInitiated};
    std::vector<Subscription> subscriptions_;
};
