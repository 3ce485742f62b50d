#pragma once
#include <functional>
#include <string>
#include <vector>

#include "platform/StatusBar.h"

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
    /// As the menu shows them; empty for none.
    struct Keys {
        std::function<std::string()> toggleMainWindow;
        std::string openPreferences, terminate;
    };
    StatusItem(StatusBar& bar, Actions actions, Keys keys)
        : bar_(bar), actions_(std::move(actions)), keys_(std::move(keys)) {}

    /// As often as one likes.
    void setupMenuExtraMenuItem();
    /// The menu shows other keys now.
    void keysChanged();

  private:
    std::vector<StatusItemContent::Entry> menu() const;

    StatusBar& bar_;
    const Actions actions_;
    const Keys keys_;
    bool isShown_ = false;
};
