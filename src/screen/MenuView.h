#pragma once
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "screen/Geometry.h"

/// A line of a menu: a command, a menu of its own, or a separator. Texts are UTF-8 that need not be
/// safe to show.
struct MenuItem {
    std::string identifier = {};
    std::string title = {};     // empty: a separator
    std::string keys = {};      // "Ctrl+Shift+P"; they only stand there
    std::string iconName = {};  // freedesktop icon name, or the path of a picture
    std::string toolTip = {};   // why it is disabled
    bool isEnabled = true;
    bool isSubmenu = false;
    std::vector<MenuItem> items = {};  // of the submenu
};

/// What the user has picked.
struct MenuChoice {
    std::string submenu;  // its identifier; empty: of the menu itself
    std::string identifier;
};

/// A menu over the window. It has the keyboard while it is open; Escape closes it alone. Main
/// thread.
class MenuView {
  public:
    struct Look {
        double hue = 0;  // from 0 to 1
        bool isDark = false;
    };
    struct Place {
        Point corner;  // as the result table tells it
        /// Opened by a key: the first item is chosen.
        bool isByKey = false;
    };
    using Ended = std::function<void(const std::optional<MenuChoice>&)>;

    virtual ~MenuView() = default;
    /// Returns at once. ended is called once, when the menu has gone. There is one at most.
    virtual void popUp(const std::vector<MenuItem>& items, const Look& look, const Place& place,
                       Ended ended) = 0;
    /// More is known by now about the same items, one for one: which are enabled, and submenus.
    virtual void update(const std::vector<MenuItem>& items) = 0;
    /// Without a choice. Does nothing where none is open.
    virtual void close() = 0;
    virtual bool isOpen() const = 0;
};
