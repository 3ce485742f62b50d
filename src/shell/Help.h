#pragma once
#include <string>
#include <vector>

#include "screen/HelpView.h"
#include "screen/KeyEvent.h"
#include "shell/refusals.h"
#include "util/queues/MainQueue.h"
#include "util/queues/OperationQueue.h"

class HidingGuard;
class ModeHost;
class OwnApplication;
class SearchWindowController;
class TRVModeRepresentingFiles;

/// The list of all keys of the current mode, which a command shows and hides, and the keys for the
/// selection, which show while Ctrl alone is held for longer than a second.
/// Sees each key event before the windows do.
/// Owner:   AppDelegate. Threads: main; a queue of its own asks the disk.
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
    void stopWaiting();
    /// The current mode, where it shows files that the user can do something to.
    TRVModeRepresentingFiles* modeInUse() const;
    void askDisk();
    void showKeysForSelection(const std::vector<FileURL>& items, const Refusals& refusals);
    HelpContent sheetContent(const std::string& filter) const;
    void helpFilterDidChange(const std::string& filter) override;
    void helpWantsToClose() override { parts_.view.hide(); }

    const Parts parts_;
    std::vector<HelpGroup> groups_;  // of the sheet
    std::string title_;
    uint64_t heldModifiers_ = 0;
    OneShotTimer holding_;
    bool isAsking_ = false;
    uint64_t asking_ = 0;  // the answer to an earlier question is of no use
    OperationQueue queue_{"helpQ", 1, Qos::userInitiated, OperationQueue::Order::newestFirst};
};
