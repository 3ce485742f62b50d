#pragma once
#include <functional>
#include <string>

#include "modes/framework/ModeHost.h"
#include "modes/framework/TRVMode.h"
#include "util/Observable.h"
#include "util/Relaxed.h"
#include "util/queues/OperationQueue.h"

/// What exists once for all modes: which of them is current, the running search, the window's row
/// limit. It launches searches so that the newest text wins and at most one search runs.
/// Owner:   World. Threads: any, unless said otherwise.
class GlobalState {
  public:
    /// What a search shows while it runs and when it is over, also a stale one. Main thread.
    struct SearchObserver {
        std::function<void()> started;
        std::function<void(TRVMode& mode)> ended;
    };

    static GlobalState& sharedInstance();

    TRVMode* currentMode() const { return currentMode_; }
    void setCurrentMode(TRVMode* mode) { currentMode_ = mode; }
    Observable<bool>& maximized() { return maximized_; }
    long maxNumberOfRows() const { return maxNumberOfRows_; }
    void setMaxNumberOfRows(long rows) { maxNumberOfRows_ = rows; }
    /// What the items marked for it wait for: 0 nothing, 1 to be copied, 2 to be moved.
    int64_t currentPasteboardAction() const { return currentPasteboardAction_; }
    void setCurrentPasteboardAction(int64_t action) { currentPasteboardAction_ = action; }
    /// Before the first search.
    void setSearchObserver(SearchObserver observer) { observer_ = std::move(observer); }

    /// Makes the running search of the current mode stale, waits for it in the background and
    /// starts a new one with the text that the mode has then. A search that has gone stale calls
    /// its block only if forced.
    void searchInBackgroundForceBlockExecution(ForceBlock force, ModeHost::SearchBlock finalBlock);
    /// Whether a search runs, or waits to.
    bool isSearching() const { return lastEnded_ != launches_; }
    /// No search begins any more; before the application goes.
    void endWork() { isEnding_ = true; }
    void waitForSearches() { searchQ_.waitUntilAllOperationsAreFinished(); }

  private:
    void search(TRVMode& mode, ForceBlock force, const ModeHost::SearchBlock& finalBlock);

    Relaxed<TRVMode*> currentMode_ = nullptr;
    Relaxed<long> maxNumberOfRows_ = 10;
    Relaxed<bool> isEnding_ = false;
    Relaxed<int64_t> launches_ = 0, lastEnded_ = 0;
    Relaxed<int64_t> currentPasteboardAction_ = 0;
    Observable<bool> maximized_{false};
    SearchObserver observer_;
    OperationQueue searchQ_{"searchQ", OperationQueue::kUnlimited, Qos::userInteractive};
    // Made last, so ended first: its blocks use searchQ_.
    OperationQueue searchLaunchQ_{"searchLaunchQ", 1, Qos::userInteractive};
};
