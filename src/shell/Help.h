#pragma once
#include <string>
#include <vector>

#include "screen/HelpView.h"
#include "screen/KeyEvent.h"
#include "util/queues/MainQueue.h"

class HidingGuard;
class KeyboardShortcuts;
class ModeHost;
class OwnApplication;
class SearchWindowController;

/// The list of all keys of the current mode, which a command shows and hides, and the keys for the
/// selection, which show while Ctrl alone is held for longer than a second.
/// Owner:   AppDelegate. Threads: main. Sees each key event before the windows do.
class Help : private HelpViewDelegate {
  public:
    struct Parts {
        HelpView& view;
        ModeHost& host;
        const SearchWindowController& window;
        const OwnApplication& application;
        const HidingGuard& guard;
        const KeyboardShortcuts& shortcuts;
    };
    explicit Help(const Parts& parts);
    ~Help() override;

    /// The list of all keys comes or goes.
    void toggle();
    /// True: the event goes no further.
    bool sendEvent(const KeyEvent& event);
    /// Something else happens with the selection than that keys are looked up.
    void selectionDidChange();
    /// The window, or the keyboard, has gone.
    void reset();

  private:
    bool handleKeyOfSheet(const KeyEvent& event);
    void watchHolding(const KeyEvent& event);
    void startHolding();
    void endHolding();
    void showKeysForSelection();
    HelpContent sheetContent(const std::string& filter) const;
    void helpFilterDidChange(const std::string& filter) override;
    void helpWantsToClose() override { parts_.view.hide(); }

    const Parts parts_;
    std::vector<HelpGroup> groups_;  // of the sheet
    std::string title_;
    uint64_t heldModifiers_ = 0;
    OneShotTimer holding_;
};
