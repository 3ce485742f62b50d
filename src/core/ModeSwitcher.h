#pragma once
#include <vector>

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

    /// The modes that there are. Main thread, before anything is shown.
    void addMode(TRVMode& mode);
    /// Null: there is none of this kind. Any thread.
    TRVMode* modeWithIdentifier(ModeIdentifier identifier) const;
    const std::vector<TRVMode*>& modes() const { return modes_; }

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
    void leave(TRVMode& mode, const TRVMode& forMode);
    void showText(TRVMode& mode);
    void showLook(TRVMode& mode);

    const Parts parts_;
    std::vector<TRVMode*> modes_;
    uint64_t modifierFlags_ = 0;
};
