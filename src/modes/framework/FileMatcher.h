#pragma once
#include <memory>
#include <string>
#include <string_view>

#include "modes/framework/MatchingItem.h"
#include "searchmodes/FuzzySearch.h"
#include "searchmodes/RankRequest.h"

/// Judges files one after another by the terms of a search, for modes whose files are in no index.
/// Owner:   one search. Threads: one. The request outlives it.
/// Fails:   a file that cannot be looked at is no match, with a line in the log, where the disk has
///          a say.
class FileMatcher {
  public:
    /// Whether a file must be on the disk to be a row.
    enum class Presence { optional, required };

    explicit FileMatcher(const RankRequest& request);

    /// Neither a text nor a set of extensions: every file is a row.
    bool matchesEverything() const { return matchesEverything_; }
    /// Fills what the item tells of the match; its other fields are the caller's.
    bool match(const FileURL& url, MatchingFileSystemItem& item, Presence presence);

    // Its parts, for whoever has prepared the texts.
    /// Bits that the mask of a text must have.
    NameMask need() const { return need_; }
    bool passesExtension(std::string_view name) const;
    /// Kind and metadata of the item.
    bool lookAtDisk(const FileURL& url, MatchingFileSystemItem& item, Presence presence) const;
    /// Precomposed, without diacritics where they are ignored. Adds to the last two.
    bool matchText(std::u16string_view text, IndexSet& indexes, double& score);
    bool matchMetadata(MatchingFileSystemItem& item);
    /// Some terms are about metadata.
    bool judgesMetadata() const;

    /// The search is over, whatever becomes of its request: what matched then still does.
    void searchIsOver() {
        if (regex_) regex_->ignoreStale();
    }

    /// What the terms say of the order; null while metadata is not read.
    const MetadataEngine* sortOrder() const {
        return request_.processMetadata ? metadata_.get() : nullptr;
    }
    /// The order of rows by score; equal ones by their paths.
    static bool precedes(const MatchingFileSystemItem& a, const FileURL& urlOfA,
                         const MatchingFileSystemItem& b, const FileURL& urlOfB);

  private:
    bool passesFilters(const FileURL& url) const;

    const RankRequest& request_;
    const bool matchesEverything_;
    const FuzzySearch fuzzy_;
    NameMask need_ = 0;
    const std::unique_ptr<RegexEngine> regex_;
    const std::unique_ptr<MetadataEngine> metadata_;
};
