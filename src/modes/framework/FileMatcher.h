#pragma once
#include <memory>
#include <string>

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
    /// The order of rows by score; equal ones by their paths.
    static bool precedes(const MatchingFileSystemItem& a, const FileURL& urlOfA,
                         const MatchingFileSystemItem& b, const FileURL& urlOfB);

  private:
    bool passesFilters(const FileURL& url) const;
    bool lookAtDisk(const FileURL& url, MatchingFileSystemItem& item, Presence presence) const;
    bool matchText(const FileURL& url, MatchingFileSystemItem& item);

    const RankRequest& request_;
    const bool matchesEverything_;
    const FuzzySearch fuzzy_;
    const std::unique_ptr<RegexEngine> regex_;
    const std::unique_ptr<MetadataEngine> metadata_;
};
