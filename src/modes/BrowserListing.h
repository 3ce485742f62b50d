#pragma once
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "modes/BrowserFolder.h"
#include "modes/framework/FileMatcher.h"
#include "modes/framework/MatchingItem.h"

/// The entries of a folder that match a search, best first. A folder can have a hundred thousand of
/// them: what a row shows is found out when it is asked for.
/// Owner:   Browser mode, shared with who looks at rows. Threads: made by a search, then any.
/// Fails:   an entry that has vanished is a row without type and metadata.
class BrowserListing {
  public:
    /// The request's rules; its files are named by the folder.
    BrowserListing(std::shared_ptr<const BrowserFolder> folder, RankRequest request);

    /// Finds the rows. False: the search was aborted.
    bool search();

    size_t count() const { return rows_.size(); }
    FileURL url(size_t row) const { return folder_->urlOf(rows_[row].entry); }
    std::optional<size_t> rowOf(const FileURL& url) const;
    /// Looks at the disk.
    std::shared_ptr<MatchingBrowserItem> item(size_t row) const;

  private:
    struct Row {
        double score;
        uint32_t entry;
    };
    bool findRows();
    bool matchNames();
    bool lookAtFiles();

    const std::shared_ptr<const BrowserFolder> folder_;
    const RankRequest request_;
    mutable std::mutex matcherMutex_;
    mutable FileMatcher matcher_;
    std::vector<Row> rows_;
};
