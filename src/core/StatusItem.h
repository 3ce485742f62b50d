#pragma once
#include <functional>

class StatusBar;

/// The item in the desktop's bar that brings the window up: there as long as the setting
/// showStatusMenu says so.
/// Owner:   AppDelegate. Threads: main.
class StatusItem {
  public:
    struct Actions {
        std::function<void()> toggleMainWindow;
        std::function<void()> openQuickStart;
        std::function<void()> openPreferences;
        std::function<void()> terminate;
    };
    StatusItem(StatusBar& bar, Actions actions) : bar_(bar), actions_(std::move(actions)) {}

    /// As often as one likes.
    void setupMenuExtraMenuItem();

  private:
    StatusBar& bar_;
    const Actions actions_;
    bool isShown_ = false;
};
