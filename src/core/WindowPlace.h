#pragma once
#include "screen/WindowView.h"

/// Where the user left the window, for each size of a screen: kept in the settings
/// searchPanelTopLeft and searchPanelWidth.
/// Owner:   SearchWindowController. Threads: main. Units: see WindowGeometry.
class WindowPlace {
  public:
    explicit WindowPlace(WindowView& window) : window_(window) {}

    /// To where it stood on a screen of this size, or to the default place. It comes on screen
    /// whatever is stored.
    void restoreWindowPosition();
    /// Not while it is maximised.
    void persistWindowPosition();

  private:
    WindowView& window_;
};
