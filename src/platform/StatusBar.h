#pragma once
#include <functional>
#include <string>
#include <vector>

/// What stands in the desktop's bar for the program.
struct StatusItemContent {
    struct Entry {
        std::string title;  // empty: a separator
        std::function<void()> action;
        std::string keys = {};  // "Ctrl+Q"; they only stand there
    };
    std::string toolTip;
    std::function<void()> action;  // a click
    std::vector<Entry> menu;
};

/// The place for the program's status item. Main thread.
/// Owner:   main.
/// Fails:   silently: on a desktop without such a bar the item is never seen. Where a bar comes
///          later, the item appears then.
class StatusBar {
  public:
    virtual ~StatusBar() = default;
    virtual void showStatusItem(StatusItemContent content) = 0;
    /// Another menu for the item that is shown.
    virtual void setStatusMenu(std::vector<StatusItemContent::Entry> menu) = 0;
    virtual void removeStatusItem() = 0;
};
