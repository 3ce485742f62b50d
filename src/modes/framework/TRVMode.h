#pragma once
#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "screen/RowContent.h"
#include "util/Relaxed.h"
#include "util/Section.h"

class ModeHost;

/// One bit a mode, so that masks stand for groups of them.
enum ModeIdentifier : uint64_t {
    kSearchMode = 1,
    kBrowserMode = 2,
    kRecentMode = 4,
    kMarkedItemsMode = 8,
    kProjectMode = 16,
    kActionsMode = 32,
    kDataProviderMode = 64,
    kHistoryMode = 128,
    kFileModes = 15,     // rows are files; several may be selected
    kListingModes = 13,  // Search, Recent, Marked
    kSubModes = 224,     // have a parent mode
};

/// Rows that changed, ascending; nothing: all of them may have.
using ChangedRows = std::optional<std::vector<size_t>>;

/// What fills the one result table: which items there are, how the search text filters them, how a
/// row looks.
/// Owner:   World, one object a class (sharedInstance).
/// Threads: searchForString on a searchQ thread; the rest on the main thread unless it says so.
class TRVMode {
  public:
    /// Called exactly once a search, also an aborted one, on the searching thread: whether the
    /// result may be shown, and the rows that it changed.
    using SearchFinalBlock = std::function<void(bool valid, ChangedRows rows)>;

    explicit TRVMode(ModeIdentifier identifier) : identifier_(identifier) {}
    virtual ~TRVMode() = default;

    ModeIdentifier identifier() const { return identifier_; }
    /// Before anything else; the host outlives the work of all queues.
    void setHost(ModeHost* host) { host_ = host; }
    bool isActive() const;

    virtual std::string searchFieldPlaceholderText() = 0;
    virtual std::string infoString() = 0;
    virtual std::string infoTooltip() { return {}; }
    /// Replaces the filtered items by those that match.
    virtual void searchForString(const std::u16string& string, const SearchFinalBlock& block) = 0;
    /// The field was emptied: nothing is left to show.
    virtual void searchStringBecameEmpty() {}
    /// What is selected, so that it can be selected again after the next search; and that a new
    /// text makes an end of it.
    virtual void saveSelection() = 0;
    virtual void forgetSelection() = 0;
    /// The table has reloaded: bring the selection back.
    virtual void resultSetReloaded() = 0;
    /// Any thread; of the list that is shown now.
    virtual uint64_t filteredCount() = 0;
    /// What the rows from first on show, at most count of them, fewer at the end of the list.
    virtual std::vector<RowContent> rowContents(size_t first, size_t count) = 0;

    /// The mode's search text; it stays with the mode. Any thread.
    std::u16string searchString() const;
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

  protected:
    ModeHost& host() const { return *host_; }
    /// Guards the filtered items: readers see the old list or the new, never a part of one.
    Section filteredItemsAccessQueue_{"filterAccessQueue", 2};

  private:
    const ModeIdentifier identifier_;
    ModeHost* host_ = nullptr;
    Relaxed<bool> abortSearch_ = false;
    Relaxed<bool> hasUnseenResult_ = false;
    Relaxed<bool> lastSearchWasSlow_ = false;
    mutable std::mutex searchStringMutex_;
    std::u16string searchString_;
};
