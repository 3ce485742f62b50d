#pragma once
#include <map>

#include "modes/framework/TRVMode.h"
#include "screen/InfoBarView.h"
#include "screen/ResultTableView.h"
#include "screen/WindowView.h"

class ModeHost;
class OwnApplication;
class SearchFieldController;

/// Which mode fills the window.
/// Owner:   AppDelegate. Threads: see each operation.
class ModeSwitcher {
  public:
    struct Parts {
        ModeHost& host;
        WindowView& window;
        ResultTableView& table;
        InfoBarView& infoBar;
        SearchFieldController& field;
        const OwnApplication& application;
    };
    explicit ModeSwitcher(const Parts& parts) : parts_(parts) {}

    /// A mode that can be asked for by its identifier; before the first key. It outlives this.
    void addMode(TRVMode& mode) { modes_[mode.identifier()] = &mode; }
    /// Null: there is no such mode.
    TRVMode* modeWithIdentifier(ModeIdentifier identifier) const;

    /// The mode becomes the current one and shows itself as it was left; whoever calls then has it
    /// search. Runs on switchModeQueue and waits for the main thread.
    void activateMode(TRVMode& mode);
    /// On switchModeQueue, and then searches. Any thread.
    void switchToMode(TRVMode& mode);
    /// The first mode of a run, before anything is shown. Main thread.
    void begin(TRVMode& mode);
    /// The desktop's colours have changed. Main thread.
    void themeChanged();

    /// Modifier keys that are down, as the last change of mode and the keys since have it.
    uint64_t modifierFlags() const { return modifierFlags_; }
    void setModifierFlags(uint64_t flags) { modifierFlags_ = flags; }

  private:
    void switchOnMainThread(TRVMode& mode);
    void showText(TRVMode& mode);
    void showLook(TRVMode& mode);

    const Parts parts_;
    std::map<ModeIdentifier, TRVMode*> modes_;
    uint64_t modifierFlags_ = 0;
};
