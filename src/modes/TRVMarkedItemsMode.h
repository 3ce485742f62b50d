#pragma once
#include "index/PathCache.h"
#include "modes/framework/TRVModeSupportingPath.h"

/// Two lists in turn: the items that the user has marked, which stay marked from run to run, and
/// those that are to be copied or moved, which are forgotten at the end. The second one is shown
/// for a while only: leaving the mode brings the first one back.
/// Owner:   World; outlives Search mode, whose indexes tell the lists what happened to files.
/// Threads: see TRVMode; the lists and what keeps them up to date: any.
class TRVMarkedItemsMode : public TRVModeSupportingPath {
  public:
    /// What is to be done with the items of the second list.
    enum PasteboardAction : int64_t { kNoAction = 0, kCopy = 1, kMove = 2 };

    TRVMarkedItemsMode(const FileTypes& fileTypes, OVUserDefaults& settings);
    static TRVMarkedItemsMode& sharedInstance();

    PathCache& markedItemsCache() { return markedItemsCache_; }
    PathCache& fileOperationItemsCache() { return fileOperationItemsCache_; }
    bool isFileOperationsMode() const { return fileOperationsMode_; }

    // Commands; main thread. False: an error was shown.
    /// The other list.
    void toggleMarkedItemsMode();
    /// Marks each, or takes its mark away.
    void toggleMarkedItemFlag(const std::vector<FileURL>& urls);
    /// These become the second list.
    void selectItemsAsSource(const std::vector<FileURL>& urls, PasteboardAction action);
    /// These join it, or leave it.
    bool addItemsToSource(const std::vector<FileURL>& urls, PasteboardAction action);

    // What happened to files; any thread, also inside sections.
    bool isMarked(const FileURL& url) const;
    RowContent::Source sourceOf(const FileURL& url) const;
    bool hasMarkedPaths() const;
    void updatePathCachesAfterRename(const FileURL& from, const FileURL& to);
    /// It left an index, which it may do without being gone.
    void updatePathCachesAfterRemovePath(const FileURL& url);
    void storeRemovedPaths();

    // TRVMode
    void resign() override { resignKeepingSubMode(false); }
    void resignKeepingSubMode(bool keep) override;
    void restorePrimarySubMode() override;
    void searchWindowDidOpen() override;
    KeyboardShortcutEntries keyboardShortcutsIncludingSuperclass(bool including) const override;
    std::string searchFieldPlaceholderText() override { return "Marked items"; }
    std::string infoString() override;
    void searchForString(const std::u16string& string, const SearchFinalBlock& block) override;
    std::vector<RowContent> rowContents(size_t first, size_t count) override;
    void themeChanged() override;

  protected:
    std::optional<FileURL> matchingItemToURL(const MatchingItem& item) override;

  private:
    PathCache& listOnShow() {
        return fileOperationsMode_ ? fileOperationItemsCache_ : markedItemsCache_;
    }
    void setFileOperationsMode(bool fileOperations);
    void submodeChanged();
    void listChanged(bool isOnShow);

    const FileTypes& fileTypes_;
    PathCache markedItemsCache_, fileOperationItemsCache_;
    Relaxed<bool> fileOperationsMode_ = false;
    std::optional<Selection> otherSelection_ = Selection{};  // of the list that is not on show
};
