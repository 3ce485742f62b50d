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
#include "modes/ProjectCaches.h"
#include "modes/framework/TRVMode.h"
#include "searchmodes/RankRequest.h"
#include "searchmodes/match_t.h"
#include "util/Observable.h"
#include "util/queues/MainQueue.h"
#include "util/queues/OperationQueue.h"

class FileTypes;

/// The main mode: searches the in-memory index of the current project. It owns the projects, one
/// Cache a project, the scan, and the rows of the last result.
/// Owner:   World. Threads: see each operation. Rows are looked at in a read section of the Cache
/// and,
///          inside it, one of the filtered items.
class TRVSearchMode : public TRVMode, public IndexObserver {
  public:
    explicit TRVSearchMode(const FileTypes& fileTypes);
    ~TRVSearchMode() override;
    static TRVSearchMode& sharedInstance();

    // Projects.
    /// Main thread: from the settings.
    void loadProjects();
    /// Main thread: makes the stored current project current, if it is enabled.
    void initSelectedProject();
    std::shared_ptr<const Project> projectByUuid(const std::string& uuid) const;
    std::shared_ptr<const Project> currentProject() const;
    bool hasProjects() const { return !projects_.empty(); }
    bool hasEnabledProjects() const;
    /// Main thread: the search text goes, and the project's index is brought up.
    void setCurrentProject(std::shared_ptr<const Project> project);
    /// Scans the project unless its Cache was kept; a scan that runs is ended first. Any thread but
    /// the scan's own.
    void triggerScanProject(std::shared_ptr<const Project> project);
    /// Searches again if somebody sees the list. Any thread.
    void triggerRefresh();
    /// Ends a running scan and searches; before the application goes.
    void abortScan();

    // TRVMode
    std::string searchFieldPlaceholderText() override;
    std::string infoString() override;
    std::string infoTooltip() override;
    void searchForString(const std::u16string& string, const SearchFinalBlock& block) override;
    void searchStringBecameEmpty() override { deleteFilteredItems(); }
    void forgetSelection() override { selection_ = {}; }
    void saveSelection() override;
    void resultSetReloaded() override;
    uint64_t filteredCount() override { return filteredCount_; }
    std::vector<RowContent> rowContents(size_t first, size_t count) override;

    /// The path of a row, nothing past the end. Outside sections, any thread.
    std::optional<FileURL> urlOfFilteredItemAtIndex(size_t row);
    /// No rows, whatever was shown. Outside sections.
    void deleteFilteredItems();
    /// Entries that the running scan has read. Any thread.
    int64_t scannedCount() const { return scanned_; }
    bool isScanning() const { return scanInProgress_; }

    // IndexObserver; inside an exclusive section of the Cache, but for the first.
    Cache* currentCache() override { return caches_.currentCache().get(); }
    void removeFilteredItem(const fs_item_t* item) override;
    void consolidateFilteredList() override;
    bool hasMarkedPaths() override { return false; }
    void updatePathCachesAfterRemovePath(const FileURL&) override {}
    void updatePathCachesAfterRename(const FileURL&, const FileURL&) override {}

  private:
    struct Outcome {
        bool valid = false;
        ChangedRows rows = std::nullopt;
    };
    RankRequest makeRequest(const std::u16string& string) const;
    Outcome search(const ReadSection& section, const std::shared_ptr<Cache>& cache,
                   const std::u16string& string, const RankRequest& request);
    void createFilteredItemsFromList(match_array_t list, const std::shared_ptr<Cache>& cache);
    void renewMatchIndicators(match_array_t list);
    /// Inside a read section of the Cache and one of the rows, if there are rows.
    void readFilteredItems(FunctionRef<void(const match_array_t&)> block);
    void startScan(const std::shared_ptr<const Project>& project);
    void scan(const std::shared_ptr<const Project>& project);
    void setScanInProgress(bool inProgress);

    const FileTypes& fileTypes_;
    ProjectCaches caches_;
    std::vector<std::shared_ptr<const Project>> projects_;
    mutable std::mutex projectMutex_;
    std::shared_ptr<const Project> currentProject_;
    const unsigned numberOfThreads_;

    Relaxed<int64_t> scanned_ = 0, ignored_ = 0;
    Relaxed<bool> abortScan_ = false;
    Relaxed<bool> scanInProgress_ = false;

    // The rows: in filteredItemsAccessQueue_.
    match_array_t filtered_;
    std::unordered_map<const fs_item_t*, size_t> rowsByItem_;  // made at the first removal
    std::shared_ptr<Cache> filteredCache_;                     // whose items they are
    Relaxed<uint64_t> filteredCount_ = 0;
    Relaxed<bool> filteredCountChanged_ = false;
    // Of the last search.
    std::u16string lastSearchString_;  // searchQ
    Relaxed<int64_t> totalMatches_ = 0, visibleMatches_ = 0;
    struct SavedSelection {
        std::vector<uint64_t> inodes = {};
        size_t mostRecentlySelectedRow = 0;
    };
    SavedSelection selection_;  // main thread
    bool restoreSelectionInProgress_ = false;
    std::vector<FileURL> missingFolders_;  // main thread: project folders that the index lacks

    // Last: their blocks use all of the above.
    SerialQueue scanQ_{"scanQ", Qos::userInitiated};
    SerialQueue scanLaunchQ_{"scanLaunchQ", Qos::background};
};
