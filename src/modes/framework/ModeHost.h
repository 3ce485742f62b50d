#pragma once
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "modes/framework/TRVMode.h"
#include "util/Result.h"

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
    /// Whether a search runs, or waits to.
    virtual bool isSearching() const = 0;
    /// Searches again, and then shows what came out.
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
    /// Draws the rows on screen again: what is marked has changed.
    virtual void updateMarkersOfVisibleItems() = 0;

    // Field and info bar.
    /// Placeholder of the field, text and tool tip of the info bar, from the current mode.
    virtual void updateTextsOfCurrentMode() = 0;
    /// The buttons that show what limits the result; updateTextsOfCurrentMode does it too.
    virtual void updateSearchCriterionIndicators() = 0;
    virtual void updateSearchFieldWithEmptySearchString() = 0;
    /// Shows a text without searching for it.
    virtual void updateSearchString(const std::u16string& string) = 0;
    virtual void focusOnSearchField() = 0;
    virtual void enableSearchField() = 0;
    virtual void disableSearchField() = 0;
    /// Short messages; any thread.
    virtual void error(const std::string& text) = 0;
    virtual void info(const std::string& text) = 0;
    virtual void beep() = 0;
    virtual void stopSearchAnimation() = 0;
    virtual void startScanAnimation() = 0;
    virtual void stopScanAnimation() = 0;
    virtual void setActionModeForAnimation(bool isActionMode) = 0;

    /// Asks the user; the window stays meanwhile and has the keyboard again afterwards. The index
    /// of the button.
    virtual size_t askPreventingHiding(const Alert& alert) = 0;

    // Files.
    /// Whether the user has marked it. Any thread, also inside sections.
    virtual bool isMarked(const FileURL& url) const = 0;
    virtual RowContent::Source sourceOf(const FileURL& url) const = 0;
    /// Gives it another path, and tells the index, the marks and all modes. Main thread.
    virtual Result<void> renameItem(const FileURL& from, const FileURL& to) = 0;
    /// Asks the user. Main thread.
    virtual bool reallyTrashItems(const std::vector<FileURL>& urls) = 0;
    virtual void moveToTrash(const std::vector<FileURL>& urls) = 0;

    /// The one way to change the project. Not on the main thread, which it waits for.
    virtual void makeCurrentProject(std::shared_ptr<const Project> project) = 0;
};
