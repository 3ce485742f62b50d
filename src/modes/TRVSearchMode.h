#pragma once
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "datatypes/Project.h"
#include "index/FSScanner.h"
#include "index/IndexObserver.h"
#include "modes/Freshness.h"
#include "modes/LiveIndex.h"
#include "modes/ProjectCaches.h"
#include "modes/ProjectEventStreams.h"
#include "modes/framework/TRVModeSupportingPath.h"
#include "searchmodes/RankRequest.h"
#include "searchmodes/match_t.h"
#include "util/Observable.h"
#include "util/queues/MainQueue.h"
#include "util/queues/OperationQueue.h"

class FileTypes;
class RepeatingTimer;
class TRVMarkedItemsMode;

/// The main mode: searches the in-memory index of the current project. It owns the projects, one
/// Cache a project, the scan, the streams of file-system events, and the rows of the last result.
/// Owner:   World. Threads: see each operation. Rows are looked at in a read section of the Cache
///          and, inside it, one of the filtered items.
class TRVSearchMode : public TRVModeSupportingPath, public IndexObserver {
  public:
    /// The marks outlive it.
    TRVSearchMode(const FileTypes& fileTypes, FileEvents& fileEvents, TRVMarkedItemsMode& marks);
    ~TRVSearchMode() override;
    static TRVSearchMode& sharedInstance();

    // Projects (TRVSearchModeProjects.cpp).
    /// Main thread: from the settings.
    void loadProjects();
    /// Main thread: makes the stored current project current, if it is enabled.
    void initSelectedProject();
    /// Main thread.
    std::shared_ptr<const Project> projectByUuid(const std::string& uuid) const;
    bool hasProjects() const { return !projects_.empty(); }
    bool hasEnabledProjects() const;
    std::shared_ptr<const Project> currentProject() const { return currentProject_.value(); }
    /// Main thread: the search text goes, and the project's index is brought up. Null: no project.
    void setCurrentProject(std::shared_ptr<const Project> project);
    /// Puts a changed copy of the current project in its place: what is shown of it changes, not
    /// what is in its index. Main thread.
    void changeCurrentProject(FunctionRef<void(Project&)> change);
    /// Writes the projects to the settings. Main thread.
    void storeProjects();
    /// In their order. Main thread.
    const std::vector<std::shared_ptr<const Project>>& projects() const { return projects_; }
    /// Puts the projects in another order, and stores it. Main thread.
    void moveProject(size_t from, size_t to);
    Observable<std::shared_ptr<const Project>>& observableCurrentProject() {
        return currentProject_;
    }
    /// A project of no name for one folder (that of a file), made current; false if the path cannot
    /// be read. Not on the main thread.
    bool createVirtualProjectFromPath(const FileURL& path);
    /// The virtual project around the current one; false if the current one is none, or the root.
    bool browseToParentOfVirtualProject();

    // Index (TRVSearchModeIndex.cpp).
    bool setCurrentCacheByProject(const Project& project);
    void removeCacheForProject(const Project& project);
    std::shared_ptr<Cache> sharedCurrentCache() const { return caches_.currentCache(); }
    std::shared_ptr<Cache> cacheForProject(const Project& project) const {
        return caches_.cacheForProject(project);
    }
    /// Scans the project unless its Cache was kept; a scan that runs is ended first. Any thread but
    /// the scan's own.
    void triggerScanProject(std::shared_ptr<const Project> project);
    /// What the index of a project was made by has changed; null: of all projects. Main thread.
    void scanParameterModified(const std::shared_ptr<const Project>& project);
    /// Ends a running scan and searches.
    void abortScan();
    /// The same, and waits for their end. Any thread but theirs.
    void abortScanAndWait();
    /// The same for good: nothing begins any more. Before the application goes.
    void endWork();
    /// No events come any more; after all queues are drained.
    void endEvents() { streams_.close(); }
    /// Each time a first scan is complete; main thread.
    Signal<>& scanCompleted() { return scanCompleted_; }
    /// Watches the project's folders: from where its Cache stands, else from the id. True: its
    /// Cache did not tell, so it has to be scanned. Main thread.
    bool addFSObserversForProject(const std::shared_ptr<const Project>& project,
                                  uint64_t maybeUsingFsEventStreamEventId);
    void removeFSObserversForProject(const Project* project);
    LiveIndex& liveIndex() { return liveIndex_; }
    ModeHost& modeHost() const { return host(); }

    // The visible list follows the index (TRVSearchModeIndex.cpp). Main thread.
    void autoUpdateResult();
    void triggerAutoUpdateTimer();
    /// Nobody looks: nothing needs to be looked after. When somebody does, folders that no event
    /// comes from are checked at once, and then once a minute.
    void setWindowVisible(bool visible);
    Freshness freshness() const;
    /// Searches again if somebody sees the list. Any thread.
    void triggerRefresh();

    /// Shows all matches for once, or the limited list again. Main thread.
    void toggleIgnoreMaximumResultSetSize();

    // TRVMode
    std::string searchFieldPlaceholderText() override;
    std::string infoString() override;
    std::string infoTooltip() override;
    void searchForString(const std::u16string& string, const SearchFinalBlock& block) override;
    void searchStringBecameEmpty() override { deleteFilteredItems(); }
    void activate() override;
    void resign() override;
    void saveSelection() override;
    void restoreSelection() override;
    void resultSetReloaded() override;
    void markPathForFutureSelection(const FileURL& url) override;
    KeyboardShortcutEntries keyboardShortcutsIncludingSuperclass(bool) const override;
    bool handleEvent(const KeyEvent& event) override;
    void themeChanged() override;
    uint64_t filteredCount() override { return filteredCount_; }
    std::vector<RowContent> rowContents(size_t first, size_t count) override;

    /// The path of a row, nothing past the end. Outside sections, any thread.
    std::optional<FileURL> urlOfFilteredItemAtIndex(size_t row) override;
    std::vector<FileURL> urlsOfFilteredItemsAtIndexSet(const std::vector<size_t>& rows) override;
    std::optional<size_t> rowIndexOfFilteredItemByURL(const FileURL& url) override;
    /// No rows, whatever was shown. Outside sections.
    void deleteFilteredItems();
    /// Entries that the running scan has read. Any thread.
    int64_t scannedCount() const { return scanned_; }
    bool isScanning() const;
    int64_t totalMatches() const { return totalMatches_; }

    // IndexObserver; inside an exclusive section of the Cache, but for the first.
    Cache* currentCache() override { return caches_.currentCache().get(); }
    void removeFilteredItem(const fs_item_t* item) override;
    void consolidateFilteredList() override;
    bool hasMarkedPaths() override;
    void updatePathCachesAfterRemovePath(const FileURL& url) override;
    void updatePathCachesAfterRename(const FileURL& from, const FileURL& to) override;

  private:
    /// Or an earlier or later copy of it.
    bool isCurrent(const std::shared_ptr<const Project>& project) const;
    struct Outcome {
        bool valid = false;
        ChangedRows rows = std::nullopt;
    };
    RankRequest makeRequest(const std::u16string& string);
    Outcome search(const ReadSection& section, const std::shared_ptr<Cache>& cache,
                   const std::u16string& string, const RankRequest& request);
    void createFilteredItemsFromList(match_array_t list, const std::shared_ptr<Cache>& cache);
    void renewMatchIndicators(match_array_t list);
    void showConsolidatedList();
    void noteMissingFolders(const ReadSection& section, Cache& cache);
    /// Inside a read section of the Cache and one of the rows, if there are rows.
    void readFilteredItems(FunctionRef<void(const match_array_t&)> block);
    void currentProjectDidChange(const std::shared_ptr<const Project>& old,
                                 const std::shared_ptr<const Project>& project);
    void observeCurrentCache();
    void leaveCache();
    void startScan(const std::shared_ptr<const Project>& project);
    void scan(const std::shared_ptr<const Project>& project);
    void scanEnded(const std::shared_ptr<const Project>& project, uint64_t eventIdAtStart);
    void resumeFSObservers(const std::shared_ptr<const Project>& project);
    bool somebodySeesTheList() const;
    void recheckUnwatched();

    const FileTypes& fileTypes_;
    FileEvents& fileEvents_;
    TRVMarkedItemsMode& marks_;
    ProjectCaches caches_;
    ProjectEventStreams streams_;                           // main thread
    std::vector<std::shared_ptr<const Project>> projects_;  // main thread
    Observable<std::shared_ptr<const Project>> currentProject_;
    const unsigned numberOfThreads_;

    Relaxed<int64_t> scanned_ = 0, ignored_ = 0;
    Relaxed<bool> abortScan_ = false, isEnding_ = false;
    Signal<> scanCompleted_;
    Relaxed<bool> ignoreMaximumResultSetSize_ = false;
    // Main thread; while the window is seen.
    std::unique_ptr<RepeatingTimer> fsEventUpdateTimer_, uncheckedTimer_;
    std::time_t lastChecked_ = 0;

    // The rows: in filteredItemsAccessQueue_.
    match_array_t filtered_;
    // Made at the first removal.
    std::optional<std::unordered_map<const fs_item_t*, size_t>> rowsByItem_;
    std::shared_ptr<Cache> filteredCache_;  // whose items they are
    Relaxed<uint64_t> filteredCount_ = 0;
    Relaxed<bool> filteredCountChanged_ = false;
    Relaxed<bool> hasEmptiedRows_ = false;  // since the list was consolidated
    // Of the last search.
    std::u16string lastSearchString_;  // searchQ
    Relaxed<int64_t> totalMatches_ = 0, visibleMatches_ = 0;
    Relaxed<bool> isShowingConsolidatedList_ = false;
    mutable std::mutex missingFoldersMutex_;
    std::vector<FileURL> missingFolders_;  // project folders that the index lacks

    // Last: their blocks use all of the above.
    SerialQueue scanQ_{"scanQ", Qos::userInitiated};
    LiveIndex liveIndex_;
    SerialQueue scanLaunchQ_{"scanLaunchQ", Qos::background};
    std::mutex scanInProgressMutex_;
    Subscription scanInProgress_;
    Subscription projectSubscription_, scanParameterSubscription_;
};
