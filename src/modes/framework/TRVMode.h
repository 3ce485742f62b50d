#pragma once
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "modes/framework/MatchingItem.h"
#include "modes/framework/ModeIdentifier.h"
#include "modes/framework/Selection.h"
#include "modes/framework/attributeLines.h"
#include "screen/KeyEvent.h"
#include "screen/ModeLook.h"
#include "screen/RowContent.h"
#include "shell/registry/KeyboardShortcutDefinition.h"
#include "util/FunctionRef.h"
#include "util/Relaxed.h"
#include "util/Section.h"
#include "util/queues/OperationQueue.h"

class ModeHost;

/// Rows that changed, ascending; nothing: all of them may have.
using ChangedRows = std::optional<std::vector<size_t>>;

/// What fills the one result table: which items there are, how the search text filters them, how a
/// row looks, and what is selected. It is left and entered again any number of times, and comes
/// back as it was left.
/// Owner:   World, one object a class (sharedInstance).
/// Threads: searchForString on a searchQ thread; the filtered items on any; the rest on the main
///          thread unless it says so.
class TRVMode {
  public:
    /// Called exactly once a search, also an aborted one, on the searching thread: whether the
    /// result may be shown, and the rows that it changed.
    using SearchFinalBlock = std::function<void(bool valid, ChangedRows rows)>;
    using FilteredItem = std::shared_ptr<MatchingItem>;

    explicit TRVMode(ModeIdentifier identifier) : identifier_(identifier) {}
    virtual ~TRVMode() = default;
    TRVMode(const TRVMode&) = delete;
    TRVMode& operator=(const TRVMode&) = delete;

    /// All changes of mode go through it, one after another; activateMode is called on it.
    static SerialQueue& switchModeQueue();

    ModeIdentifier identifier() const { return identifier_; }
    /// Before anything else; the host outlives the work of all queues.
    virtual void setHost(ModeHost* host) { host_ = host; }
    /// It is the current one. Any thread.
    bool isActive() const;

    // Coming and going.
    virtual void activate();
    virtual void resign();
    /// For a mode that is left for another, from which the user comes back to where he was (keep)
    /// or not.
    virtual void resignKeepingSubMode(bool /*keep*/) { resign(); }
    /// He did not come back from there.
    virtual void restorePrimarySubMode() {}
    /// The window was just shown with this mode in it.
    virtual void searchWindowDidOpen() {}
    virtual void windowHeightUpdated() {}

    // What it shows.
    virtual std::string searchFieldPlaceholderText() = 0;
    virtual std::string infoString() = 0;
    virtual std::string infoTooltip() { return {}; }
    /// What the rows from first on show, at most count of them, fewer at the end of the list.
    virtual std::vector<RowContent> rowContents(size_t first, size_t count) = 0;
    /// Lines that each row has below name and path.
    uint64_t numberOfAdditionalRows() const { return numberOfAdditionalRows_; }
    void setNumberOfAdditionalRows(uint64_t rows) { numberOfAdditionalRows_ = rows; }
    void updateNumberOfAdditionalRows();
    /// What decides about these lines; nothing while metadata is not read.
    std::optional<AttributeDisplay> attributeDisplay() const;
    /// Metadata criteria that the search text asks for.
    IndexSet& visibleAttributes() { return visibleAttributes_; }

    // Searching.
    /// Replaces the filtered items by those that match.
    virtual void searchForString(const std::u16string& string, const SearchFinalBlock& block) = 0;
    /// It is about to be searched anew, and not for another text: what it read before may be old.
    /// Any thread.
    virtual void contentMayHaveChanged() {}
    /// The field was emptied: nothing is left to show.
    virtual void searchStringBecameEmpty() {}
    /// What a row shows of this file has changed, though not which rows there are.
    virtual void updateRowRepresentingURL(const FileURL&) {}
    /// The table has reloaded: bring the selection back.
    virtual void resultSetReloaded();

    // Keys that the mode has for itself.
    /// Its commands under the titles of their sections. A mode decides which of them it inherits.
    virtual KeyboardShortcutEntries keyboardShortcutsIncludingSuperclass(bool /*including*/) const {
        return {};
    }
    /// True: the key is used up. Those of its commands, unless the mode has more.
    virtual bool handleEvent(const KeyEvent& event);

    // The filtered items: readers see the old list or the new, never a part of one.
    void createFilteredItemsFromArray(std::vector<FilteredItem> items);
    virtual uint64_t filteredCount() { return filteredCount_; }
    virtual FilteredItem filteredItemAtIndex(int64_t index);
    /// Those that there are, all of one list.
    virtual std::vector<FilteredItem> filteredItemsAtIndexSet(const std::vector<size_t>& rows);
    bool hasFilteredItemAtIndex(int64_t index) { return filteredItemAtIndex(index) != nullptr; }

    // The selection: none says that the search text has just changed.
    std::optional<Selection>& selection() { return selection_; }
    void forgetSelection() { selection_.reset(); }
    virtual void saveSelection() = 0;
    virtual void restoreSelection() = 0;
    bool restoreSelectionInProgress() const { return restoreSelectionInProgress_; }
    virtual void selectionDidChangeFrom(const std::vector<size_t>&, const std::vector<size_t>&) {}
    bool allowsEmptySelection() const { return allowsEmptySelection_; }

    // The look, made from one hue.
    Colour backgroundColor() const { return backgroundColor_; }
    virtual Colour oddTableRowBackgroundColor() const { return look_.oddRow; }
    virtual Colour evenTableRowBackgroundColor() const { return look_.evenRow; }
    virtual void setupTextAttrsForColor(Colour colour);
    virtual const ModeLook& look() const { return look_; }
    /// The desktop turned light or dark.
    virtual void themeChanged() = 0;

    /// The mode's search text, none before the first; it stays with the mode. Any thread.
    std::u16string searchString() const;
    bool hasSearchString() const;
    void setSearchString(std::u16string string);

    /// Set by the scheduler; a running search looks at it and gives up.
    bool abortSearch() const { return abortSearch_; }
    void setAbortSearch(bool abort) { abortSearch_ = abort; }
    /// The flag itself, for the workers of a search.
    const Relaxed<bool>& abortSearchFlag() const { return abortSearch_; }
    /// The rows were replaced by a search that went stale before it could tell the table.
    bool hasUnseenResult() const { return hasUnseenResult_; }
    void setHasUnseenResult(bool unseen) { hasUnseenResult_ = unseen; }
    bool lastSearchWasSlow() const { return lastSearchWasSlow_; }
    void setLastSearchWasSlow(bool slow) { lastSearchWasSlow_ = slow; }
    /// 0: no row is being renamed.
    uint64_t renameState() const { return renameState_; }
    void setRenameState(uint64_t state) { renameState_ = state; }

  protected:
    ModeHost& host() const { return *host_; }
    /// Selects these rows and brings the scroll position back as far as the saved selection tells.
    virtual void restoreSelectionWithIndexSet(std::vector<size_t> rows);
    /// At most so many from a row on, all of one list.
    std::vector<FilteredItem> filteredItemsFrom(size_t first, size_t count);
    /// For modes whose rows are no files.
    void saveSelectionByIndexOfSelectedRow();
    void setAllowsEmptySelection(bool allows) { allowsEmptySelection_ = allows; }
    void setColours(Colour background, Colour oddRow, Colour evenRow);

    Section filteredItemsAccessQueue_{"filterAccessQueue", 2};

  private:
    /// Inside an exclusive section.
    void deleteFilteredItems(const WriteSection&);
    void scrollTo(const std::vector<size_t>& rows, bool restoresScrollPosition);

    const ModeIdentifier identifier_;
    ModeHost* host_ = nullptr;
    Relaxed<bool> abortSearch_ = false;
    Relaxed<bool> hasUnseenResult_ = false;
    Relaxed<bool> lastSearchWasSlow_ = false;
    Relaxed<uint64_t> renameState_ = 0;
    Relaxed<uint64_t> numberOfAdditionalRows_ = 0;
    IndexSet visibleAttributes_;
    bool allowsEmptySelection_ = false;
    bool restoreSelectionInProgress_ = false;
    std::optional<Selection> selection_ = Selection{};
    Colour backgroundColor_;
    ModeLook look_;

    // In filteredItemsAccessQueue_.
    std::vector<FilteredItem> filtered_;
    Relaxed<uint64_t> filteredCount_ = 0;

    mutable std::mutex searchStringMutex_;
    std::optional<std::u16string> searchString_;
};
