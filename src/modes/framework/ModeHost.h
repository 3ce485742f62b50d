#pragma once
#include <functional>

#include "modes/framework/TRVMode.h"

class ResultTableView;

/// Whether the closure of a search runs even when a newer search has begun.
enum class ForceBlock { no, yes };

/// What the modes ask of the application around them. Implemented by core.
/// Threads: any, but resultTable and what takes effect on the window: main thread.
class ModeHost {
  public:
    /// Called once on a searchQ thread with the rows that changed, unless the search went stale.
    using SearchBlock = std::function<void(ChangedRows rows)>;

    virtual ~ModeHost() = default;
    virtual TRVMode* currentMode() const = 0;
    /// Searches the current mode again with its text.
    virtual void searchInBackgroundForceBlockExecution(ForceBlock force, SearchBlock block) = 0;
    /// The same, and then shows what came out.
    virtual void reloadInBackgroundAnimated(bool animated) = 0;
    virtual bool isMainWindowVisible() const = 0;
    virtual ResultTableView& resultTable() = 0;
    /// Placeholder of the field, text and tool tip of the info bar, from the current mode.
    virtual void updateTextsOfCurrentMode() = 0;
    virtual void startScanAnimation() = 0;
    virtual void stopScanAnimation() = 0;
};
