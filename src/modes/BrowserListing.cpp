#include "modes/BrowserListing.h"

#include <algorithm>

#include "modes/framework/FileSorter.h"

namespace {

/// So few rows are looked at on the disk, lest they show what has just vanished. Of more, what has
/// goes with the event that tells of it.
constexpr size_t kFewRows = 1000;

}  // namespace

BrowserListing::BrowserListing(std::shared_ptr<const BrowserFolder> folder, RankRequest request)
    : folder_(std::move(folder)), request_(std::move(request)), matcher_(request_) {}

bool BrowserListing::search() {
    const bool isComplete = findRows();
    matcher_.searchIsOver();
    return isComplete;
}

bool BrowserListing::findRows() {
    if (!matchNames()) return false;
    if (matcher_.matchesEverything()) return true;
    std::sort(rows_.begin(), rows_.end(), [](const Row& a, const Row& b) {
        return a.score != b.score ? a.score > b.score : a.entry < b.entry;
    });
    return (rows_.size() > kFewRows && !matcher_.judgesMetadata()) || lookAtFiles();
}

bool BrowserListing::matchNames() {
    const NameMask need = matcher_.need();
    // What has lost its diacritics may have letters that its name has not.
    const NameMask always =
        folder_->diacritics() == BrowserFolder::Diacritics::removed ? kNotAscii : 0;
    IndexSet indexes;
    for (uint32_t entry = 0; entry < folder_->count(); entry++) {
        if (request_.isAborted()) return false;
        double score = 0;
        if (!matcher_.matchesEverything()) {
            const NameMask mask = folder_->mask(entry);
            if ((need & ~mask) != 0 && !(mask & always)) continue;
            if (!matcher_.passesExtension(folder_->name(entry))) continue;
            indexes.clear();
            if (!matcher_.matchText(folder_->text(entry), indexes, score)) continue;
        }
        rows_.push_back({score, entry});
    }
    return true;
}

bool BrowserListing::lookAtFiles() {
    FileSorter sorter(matcher_.sortOrder());
    std::vector<Row> kept;
    for (const Row& row : rows_) {
        if (request_.isAborted()) return false;
        MatchingBrowserItem item;
        const FileURL url = folder_->urlOf(row.entry);
        if (!matcher_.lookAtDisk(url, item, FileMatcher::Presence::required)) continue;
        if (!matcher_.matchMetadata(item)) continue;
        item.score = row.score;
        if (sorter.sorts()) sorter.add(url, item);
        kept.push_back(row);
    }
    rows_.clear();
    if (!sorter.sorts()) {
        rows_ = std::move(kept);
        return true;
    }
    for (const size_t at : sorter.order()) rows_.push_back(kept[at]);
    return true;
}

std::optional<size_t> BrowserListing::rowOf(const FileURL& url) const {
    if (url.deletingLastPathComponent() != folder_->url()) return std::nullopt;
    const auto entry = folder_->indexOf(url.lastPathComponent());
    if (!entry) return std::nullopt;
    if (rows_.size() == folder_->count() && matcher_.matchesEverything()) return entry;
    const auto found = std::find_if(rows_.begin(), rows_.end(),
                                    [&](const Row& row) { return row.entry == *entry; });
    if (found == rows_.end()) return std::nullopt;
    return static_cast<size_t>(found - rows_.begin());
}

std::shared_ptr<MatchingBrowserItem> BrowserListing::item(size_t row) const {
    const std::lock_guard lock(matcherMutex_);
    auto item = std::make_shared<MatchingBrowserItem>();
    item->url = url(row);
    (void)matcher_.lookAtDisk(item->url, *item, FileMatcher::Presence::optional);
    if (matcher_.matchesEverything()) return item;
    matcher_.matchText(folder_->text(rows_[row].entry), item->indexes, item->score);
    matcher_.matchMetadata(*item);
    return item;
}
