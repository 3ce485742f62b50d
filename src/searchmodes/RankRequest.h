#pragma once
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>

#include "index/ItemPathFilter.h"
#include "index/NameMask.h"
#include "searchmodes/IndexSet.h"
#include "util/Relaxed.h"

struct RankedItem;
struct fs_item_metadata;

/// The engines beside the fuzzy one, as ranking needs them. Each worker makes its own.
class RegexEngine {
  public:
    virtual ~RegexEngine() = default;
    virtual size_t numberOfSearchTerms() const = 0;
    /// There are terms that must not match, and none that must.
    virtual bool didExcludingSearchOnly() const = 0;
    virtual bool match(std::u16string_view text, IndexSet& indexes, double& totalScore) = 0;
    /// No match is ended any more because the search is stale.
    virtual void ignoreStale() {}
    /// Letters without which match() refuses an ASCII text.
    virtual NameMask needOfAscii() const { return 0; }
};

class MetadataEngine {
  public:
    virtual ~MetadataEngine() = default;
    virtual size_t numberOfSearchTerms() const = 0;
    virtual bool match(const fs_item_metadata* metadata, IndexSet& matchingCriterions) = 0;
    /// Whether the queries ask for an order of the rows, and that order: -1, a comes first; 1, b
    /// does; 0, it does not tell. Threads: also several at once.
    virtual bool hasSortOrder() const { return false; }
    virtual int compare(const RankedItem&, const RankedItem&) const { return 0; }
};

/// What one search looks for: read before its section, then only read.
struct RankRequest {
    std::u16string searchString;  // diacritics removed where they are to be ignored
    bool showFiles = true;
    bool showDirectories = true;
    bool bundlesAsFiles = true;
    bool filenameOnly = true;  // else the whole path is matched
    bool ignoreDiacritics = false;
    bool processMetadata = false;
    std::optional<std::unordered_set<std::string>> extensionFilter = {};
    std::shared_ptr<const ItemPathFilter> pathFilter = {};
    std::function<std::unique_ptr<RegexEngine>(std::u16string_view)> makeRegexEngine = {};
    std::function<std::unique_ptr<MetadataEngine>(std::u16string_view)> makeMetadataEngine = {};
    unsigned numberOfThreads = 1;
    uint64_t limit = 100;  // rows that are kept; see resultLimit
    const Relaxed<bool>* abortSearch = nullptr;

    bool isAborted() const { return abortSearch && *abortSearch; }
};

/// The row limit for a stored maxResultsetSize.
inline uint64_t resultLimit(int64_t maxResultsetSize) {
    return maxResultsetSize < 11 ? 10 : static_cast<uint64_t>(maxResultsetSize);
}
constexpr uint64_t kNoResultLimit = 0x7FFFFFFFFFFFFFFF;
