#pragma once
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "modes/BrowserListing.h"
#include "modes/framework/TRVModeRepresentingFiles.h"
#include "platform/FileEvents.h"
#include "util/Observable.h"
#include "util/queues/MainQueue.h"

class FileTypes;
class TRVMarkedItemsMode;

/// What a level showed before the user went down from it. A value.
struct ParentDirectorySelection {
    std::u16string searchString = {};
    std::set<size_t> selectedRowIndexes = {};
    FileURL originalChildDirectoryUrl = {};
    Point clipOrigin = {};
};

/// The contents of one folder, from the disk and not from an index. Level by level it remembers
/// where the user was, and it follows the folder as other programs change it.
/// Owner:   World.
/// Threads: see TRVMode. Where it is and was: changed on the main thread alone; the operations that
///          look at the disk run on any other thread, and wait for it. The folder is read by the
///          search. Events are taken on serialFsEventQ.
/// Fails:   with a short message to the user; the folder on show stays.
class TRVBrowserMode : public TRVModeRepresentingFiles {
  public:
    struct Parts {
        FileURL home;
        const FileTypes& fileTypes;
        FileEvents& fileEvents;
        TRVMarkedItemsMode& marks;
    };
    explicit TRVBrowserMode(const Parts& parts);
    ~TRVBrowserMode() override;
    static TRVBrowserMode& sharedInstance();

    // Where it is (TRVBrowserModeFolders.cpp).
    /// Empty: nowhere.
    FileURL currentDirectoryURL() const { return currentDirectoryURL_.value(); }
    Observable<FileURL>& observableCurrentDirectoryURL() { return currentDirectoryURL_; }
    enum class BundleAs { folder, file };
    /// The folder, or the one around a file, which is selected then. Not on the main thread.
    void browsePath(const FileURL& url, BundleAs treatBundleAsFile);
    /// Not on the main thread.
    void browseParentDirectory();
    /// False: there is none. Not on the main thread.
    bool browseSiblingDirectoryPreceding(bool preceding, bool wantMarked);
    void pushScrollPosition();
    void clearScrollPositions();

    // Commands; main thread. What takes its time goes on behind.
    /// Into the one folder, or to the one file, also from another mode, which is left. False: an
    /// error was shown.
    bool browseSelection(const std::vector<FileURL>& urls);
    void browseSiblingDirectory(bool preceding, bool wantMarked);
    /// Home, the root, the folder of disks.
    void toggleSearchRootDirectory();
    void toggleDirSearchHidesDotFiles();
    bool dirSearchHidesDotFiles() const { return dirSearchHidesDotFiles_; }

    // Events (TRVBrowserModeEvents.cpp).
    /// No more of them. Main thread; before the host goes.
    void endEventStream() { eventStream_.reset(); }
    /// What the stream delivers.
    void fsEventCallback(FileEventBatch batch);
    /// A step of it: on serialFsEventQ, or called by a test.
    void processEvents(const FileEventBatch& batch);
    void reloadInBackgroundWithDelayAnimated(bool animated);

    // TRVMode
    void activate() override;
    void resign() override;
    void contentMayHaveChanged() override { contentIsOld_ = true; }
    std::string searchFieldPlaceholderText() override;
    std::string infoString() override;
    void searchForString(const std::u16string& string, const SearchFinalBlock& block) override;
    std::vector<RowContent> rowContents(size_t first, size_t count) override;
    KeyboardShortcutEntries keyboardShortcutsIncludingSuperclass(bool) const override;
    bool handleEvent(const KeyEvent& event) override;
    void resultSetReloaded() override;
    uint64_t filteredCount() override { return filteredCount_; }
    FilteredItem filteredItemAtIndex(int64_t index) override;
    std::vector<FilteredItem> filteredItemsAtIndexSet(const std::vector<size_t>& rows) override;
    std::optional<FileURL> urlOfFilteredItemAtIndex(size_t row) override;
    std::vector<FileURL> urlsOfFilteredItemsAtIndexSet(const std::vector<size_t>& rows) override;
    std::optional<size_t> rowIndexOfFilteredItemByURL(const FileURL& url) override;
    void prepareRenameSelectionAtRow(size_t row) override;
    void itemRenamedFrom(const ItemRename& rename) override;
    void deleteItems(const std::vector<FileURL>& urls) override;
    void themeChanged() override;

  private:
    /// Of one batch of events.
    struct EventOutcome {
        std::optional<FileURL> moveSource = {};
        int reloads = 0;
    };
    void processEvent(const FileEvent& event, EventOutcome& outcome);
    void processRename(const FileURL& path, bool exists, EventOutcome& outcome);
    void processRemoval(const FileURL& path, uint32_t flags);
    void processChange(const FileURL& path, uint32_t flags, EventOutcome& outcome);
    void directoryDidChange(const FileURL& old, const FileURL& now);
    void tellIfUnreadable(const FileURL& folder);
    void readDirectory(BrowserFolder::Diacritics diacritics);
    /// To the nearest folder above it that is still there, if it is the one on show. Any thread.
    void leaveVanished(const FileURL& folder);
    std::shared_ptr<const BrowserListing> listing();
    /// Main thread.
    void goTo(const FileURL& folder, std::optional<Selection> selection);
    void show(const FileURL& folder, const std::u16string& string);
    void reload(bool animated);
    BrowserFolder foldersIn(const FileURL& parent) const;
    /// False: it is none to go to.
    bool browseSibling(const FileURL& left, const FileURL& sibling, bool wantMarked);

    const Parts parts_;
    Observable<FileURL> currentDirectoryURL_;
    Relaxed<bool> dirSearchHidesDotFiles_ = true;
    Relaxed<bool> abortScan_ = false;
    Relaxed<bool> contentIsOld_ = true;
    // Of the search alone, which is one at a time.
    std::shared_ptr<const BrowserFolder> directoryContent_;
    // In filteredItemsAccessQueue_.
    std::shared_ptr<const BrowserListing> listing_;
    Relaxed<uint64_t> filteredCount_ = 0;
    // Main thread.
    std::vector<ParentDirectorySelection> anchstorDirectorySelectionStack_;
    std::map<FileURL, std::optional<Selection>> selectionForSibling_;
    std::map<FileURL, std::u16string> searchStringForSibling_;
    OneShotTimer delayTimer_;
    std::unique_ptr<FileEventStream> eventStream_;
    // Last: their blocks use all of the above.
    SerialQueue browseQ_{"browseQ", Qos::userInitiated};
    OperationQueue serialFsEventQ_{"serialFsEventQ", 1, Qos::background};
    Subscription directorySubscription_;
};
