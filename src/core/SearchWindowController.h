#pragma once
#include "screen/WindowView.h"

class Frontmost;
class SearchFieldController;

/// How the one window comes and goes. The search text stays: opening again shows what closing left.
/// Owner:   AppDelegate. Threads: main.
class SearchWindowController : public WindowViewDelegate {
  public:
    /// frontmost may be null where the desktop cannot tell who is in front.
    SearchWindowController(WindowView& window, SearchFieldController& field, Frontmost* frontmost);

    void showMainWindow();
    void hideMainWindow();
    /// The hot key, a second start, the status item: shows, brings to the front, or hides.
    void toggleMainWindow();
    bool isMainWindowVisible() const { return window_.isVisible(); }

    // WindowViewDelegate
    void windowDidBecomeKey() override;
    void windowDidResignKey() override {}
    void windowWillClose() override { hideMainWindow(); }

  private:
    WindowView& window_;
    SearchFieldController& field_;
    Frontmost* frontmost_;
    bool placed_ = false;
};
