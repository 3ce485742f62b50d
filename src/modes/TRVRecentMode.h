#pragma once
#include "modes/framework/TRVModeSupportingPath.h"

class FileTypes;
class TRVSearchMode;
struct RecentItem;

/// What changed lately in the current project, newest first, with its age. The records are the
/// Cache's; this mode filters and shows them.
/// Owner:   World. Threads: see TRVMode.
/// Units:   times in seconds.
class TRVRecentMode : public TRVModeSupportingPath {
  public:
    TRVRecentMode(TRVSearchMode& searchMode, const FileTypes& fileTypes)
        : TRVModeSupportingPath(kRecentMode), searchMode_(searchMode), fileTypes_(fileTypes) {}
    static TRVRecentMode& sharedInstance();

    /// " (5m ago)": whole days, else hours, else minutes, in the calendar of where the user is.
    static std::string ageText(std::time_t timestamp, std::time_t now);

    /// Into the trash, or out of the list alone: the user is asked.
    void deleteItems(const std::vector<FileURL>& urls) override;

    void activate() override;
    void searchWindowDidOpen() override;
    std::string searchFieldPlaceholderText() override;
    std::string infoString() override;
    void searchForString(const std::u16string& string, const SearchFinalBlock& block) override;
    std::vector<RowContent> rowContents(size_t first, size_t count) override;
    void themeChanged() override;
    /// Called where a project would be needed; main thread.
    void setProjectEditorBlock(std::function<void()> block) { editProjects_ = std::move(block); }

  protected:
    std::optional<FileURL> matchingItemToURL(const MatchingItem& item) override;

  private:
    std::vector<RecentItem> recentItems() const;

    TRVSearchMode& searchMode_;
    const FileTypes& fileTypes_;
    std::function<void()> editProjects_;
};
