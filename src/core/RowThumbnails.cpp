#include "core/RowThumbnails.h"

#include "core/ResultTableController.h"
#include "modes/framework/ModeHost.h"
#include "modes/framework/TRVModeRepresentingFiles.h"
#include "util/World.h"

using namespace std::chrono_literals;

namespace {

constexpr auto kQuiet = 600ms;
constexpr auto kFresh = 60s;  // then the file may have changed
constexpr size_t kMostKept = 128;
constexpr size_t kMostInSight = 64;

}  // namespace

bool RowThumbnails::mayHaveOne(const RowContent& content) {
    if (content.pathSelection) return false;  // the row stands for a folder
    const std::string_view icon = content.iconName;
    return icon.starts_with("image-") || icon.starts_with("video-") || icon == "application-pdf";
}

std::list<RowThumbnails::Kept>::const_iterator RowThumbnails::find(const FileURL& url) const {
    const auto place = places_.find(url);
    return place == places_.end() ? kept_.end() : std::list<Kept>::const_iterator(place->second);
}

void RowThumbnails::addTo(RowContent& content, size_t row) const {
    content.thumbnail.reset();
    if (kept_.empty() || !mayHaveOne(content)) return;
    auto* const mode = dynamic_cast<TRVModeRepresentingFiles*>(parts_.host.currentMode());
    const auto url = mode ? mode->urlOfFilteredItemAtIndex(row) : std::nullopt;
    const auto found = url ? find(*url) : kept_.end();
    if (found != kept_.end()) content.thumbnail = found->picture;
}

void RowThumbnails::somethingHappened() {
    parts_.thumbnails.cancel();
    quiet_.stop();
    if (parts_.host.isMainWindowVisible()) quiet_.start(kQuiet, [this] { requestRowsInSight(); });
}

void RowThumbnails::requestRowsInSight() {
    auto* const mode = dynamic_cast<TRVModeRepresentingFiles*>(parts_.host.currentMode());
    if (!mode) return;
    size_t first = parts_.rows.firstRowInSight();
    if (!parts_.table.isRowVisible(first)) first++;  // cut off at the top
    size_t count = 0;
    while (count < kMostInSight && parts_.table.isRowVisible(first + count)) count++;
    std::vector<size_t> rows;
    for (const RowContent& content : mode->rowContents(first, count)) {
        if (mayHaveOne(content)) rows.push_back(first);
        first++;
    }
    std::vector<FileURL> wanted = mode->urlsOfFilteredItemsAtIndexSet(rows);
    std::erase_if(wanted, [&, now = World::current().clock().now()](const FileURL& url) {
        const auto found = find(url);
        return found != kept_.end() && now - found->since <= kFresh;
    });
    if (!wanted.empty()) parts_.dropExcluded(wanted);
    if (wanted.empty()) return;
    parts_.thumbnails.request(
        std::move(wanted), [this](const FileURL& url, const auto& picture) { keep(url, picture); });
}

void RowThumbnails::keep(const FileURL& url, const std::shared_ptr<const Picture>& picture) {
    const auto place = places_.find(url);
    const bool isSame =
        place != places_.end() &&
        (place->second->picture == picture ||
         (place->second->picture && picture && *place->second->picture == *picture));
    if (place != places_.end()) {
        kept_.erase(place->second);
        places_.erase(place);
    }
    kept_.push_front({url, picture, World::current().clock().now()});
    places_[url] = kept_.begin();
    if (kept_.size() > kMostKept) {
        places_.erase(kept_.back().url);
        kept_.pop_back();
    }
    auto* const mode = dynamic_cast<TRVModeRepresentingFiles*>(parts_.host.currentMode());
    const auto row = mode && !isSame ? mode->rowIndexOfFilteredItemByURL(url) : std::nullopt;
    if (row && *row < parts_.host.numberOfRows()) parts_.table.reloadRows({*row});
}
