#pragma once
#include <functional>
#include <memory>

#include "modes/framework/TRVMode.h"

class Project;
class ResultTableView;
struct Alert;

/// Whether the closure of a search runs even when a newer search has begun.
enum class ForceBlock { no, yes };

/// What the modes ask of the application around them. Implemented by core.
/// Threads: any for searches and the questions; what takes effect on the window: main thread.
class ModeHost {
  public:
    /// Called once on a searchQ thread with the rows that changed, unless the search went stale.
    using SearchBlock = std::function<void(ChangedRows rows)>;

    virtual ~ModeHost() = default;
    virtual TRVMode* currentMode() const = 0;
    virtual bool isMainWindowVisible() const = 0;
    virtual bool isDark() const = 0;
    /// Searches the current mode again with its text.
    virtual void searchInBackgroundForceBlockExecution(ForceBlock force, SearchBlock block) = 0;
    /// The same, and then shows what came out.
    virtual void reloadInBackgroundAnimated(bool animated) = 0;

    /// Another mode comes into the window. Not on the main thread, which it waits for.
    virtual void activateMode(TRVMode& mode) = 0;

    // The table.
    virtual ResultTableView& resultTable() = 0;
    virtual size_t numberOfRows() const = 0;
    /// How many of them the window shows at most.
    virtual size_t maxNumberOfRows() const = 0;
    virtual void applyDiffableDataSourceSnapshotAnimated(bool animated,
                                                         const ChangedRows& forRows) = 0;
    virtual void adjustWindowHeight() = 0;

    // Field and info bar.
    /// Placeholder of the field, text and tool tip of the info bar, from the current mode.
    virtual void updateTextsOfCurrentMode() = 0;
    /// The buttons that show what limits the result; updateTextsOfCurrentMode does it too.
    virtual void updateSearchCriterionIndicators() = 0;
    virtual void updateSearchFieldWithEmptySearchString() = 0;
    virtual void stopSearchAnimation() = 0;
    virtual void startScanAnimation() = 0;
    virtual void stopScanAnimation() = 0;
    virtual void setActionModeForAnimation(bool isActionMode) = 0;

    /// Tells the user what went wrong, with a sound. Any thread.
    virtual void error(const std::string& text) = 0;
    /// Asks the user; the window stays meanwhile and has the keyboard again afterwards. The index
    /// of the button.
    virtual size_t askPreventingHiding(const Alert& alert) = 0;
    /// The one way to change the project. Not on the main thread, which it waits for.
    virtual void makeCurrentProject(std::shared_ptr<const Project> project) = 0;
};
