#include "modes/framework/FileMatcher.h"

#include <sys/stat.h>

#include <cerrno>
#include <cmath>
#include <cstring>

#include "index/Metadata.h"
#include "searchmodes/itemComparators.h"
#include "util/Unicode.h"
#include "util/log.h"

namespace {

template <class Maker>
auto make(const Maker& maker, const std::u16string& string) {
    return maker ? maker(string) : nullptr;
}

uint8_t itemTypeOf(const FileURL& url, unsigned mode) {
    if (S_ISDIR(mode)) return ITEM_DIRECTORY;
    if (!S_ISLNK(mode)) return ITEM_FILE;
    struct stat target;
    const bool isFolder = stat(url.c_str(), &target) == 0 && S_ISDIR(target.st_mode);
    return ITEM_SYMLINK | (isFolder ? ITEM_DIRECTORY : ITEM_FILE);
}

}  // namespace

FileMatcher::FileMatcher(const RankRequest& request)
    : request_(request),
      matchesEverything_(isBlank(request.searchString) && !request.extensionFilter),
      fuzzy_(request.searchString),
      regex_(make(request.makeRegexEngine, request.searchString)),
      metadata_(make(request.makeMetadataEngine, request.searchString)) {
    for (const RankTerm& term : fuzzy_.terms()) need_ |= term.need();
}

bool FileMatcher::match(const FileURL& url, MatchingFileSystemItem& item, Presence presence) {
    if (!passesFilters(url)) return false;
    if (matchesEverything_) return lookAtDisk(url, item, presence);
    // The text first: what it refuses may stand on a disk that answers slowly.
    const std::string_view bytes =
        request_.filenameOnly ? url.lastPathComponent() : std::string_view(url.path());
    std::u16string text = ruleText(bytes);
    if (request_.ignoreDiacritics) text = stringByRemovingDiacritics(text);
    return matchText(text, item.indexes, item.score) && lookAtDisk(url, item, presence) &&
           matchMetadata(item);
}

bool FileMatcher::passesFilters(const FileURL& url) const {
    const ItemPathFilter* filter = request_.pathFilter.get();
    return passesExtension(url.lastPathComponent()) &&
           (!filter || !filter->hasRules() || !filter->isPathExcluded(url));
}

bool FileMatcher::passesExtension(std::string_view name) const {
    const auto& extensions = request_.extensionFilter;
    return !extensions || extensions->contains(std::string(extensionOfName(name)));
}

bool FileMatcher::lookAtDisk(const FileURL& url, MatchingFileSystemItem& item,
                             Presence presence) const {
    struct statx info;
    if (statItem(url.c_str(), info)) {
        item.itemType = itemTypeOf(url, info.stx_mode);
        if (request_.processMetadata) item.metadata = metadataFromStatBuf(&info);
        return true;
    }
    if (matchesEverything_ || (presence == Presence::optional && !request_.processMetadata))
        return true;
    logWarning("Failed to lstat %s: %s", logText(url.path()).c_str(), std::strerror(errno));
    return false;
}

bool FileMatcher::judgesMetadata() const {
    return request_.processMetadata && metadata_ && metadata_->numberOfSearchTerms() > 0;
}

bool FileMatcher::matchMetadata(MatchingFileSystemItem& item) {
    return !request_.processMetadata || !metadata_ ||
           metadata_->match(item.metadata.get(), item.matching_metadata_criterions);
}

bool FileMatcher::matchText(std::u16string_view text, IndexSet& indexes, double& score) {
    const bool hasRegex = regex_ && regex_->numberOfSearchTerms() > 0;
    if (fuzzy_.numberOfSearchTerms() == 0 && !hasRegex) return true;
    if (regex_ && !regex_->match(text, indexes, score)) return false;
    if (!fuzzy_.match(text, indexes, score)) return false;
    // What must not be found has no score: without another term all that is left is a match.
    if (fuzzy_.numberOfSearchTerms() == 0 && regex_->didExcludingSearchOnly()) return true;
    return !std::isnan(score) && score > 0;
}

bool FileMatcher::precedes(const MatchingFileSystemItem& a, const FileURL& urlOfA,
                           const MatchingFileSystemItem& b, const FileURL& urlOfB) {
    if (a.score != b.score) return a.score > b.score;
    return urlOfA < urlOfB;
}
