#include "index/ClosingComparison.h"

#include <algorithm>
#include <set>
#include <utility>

#include "index/Cache.h"
#include "index/FolderComparison.h"
#include "index/FsEventHandler.h"
#include "util/log.h"

namespace {

using Depth = TouchedFolders::Depth;

/// What is to be looked at again after these have been put right.
TouchedFolders touchedBy(const std::vector<Difference>& differences,
                         const FolderComparison& comparison) {
    TouchedFolders touched;
    for (const Difference& each : differences) {
        touched.add(each.url.deletingLastPathComponent(), Depth::entries);
        if (each.create || each.isOther) touched.add(each.url, Depth::asRead);
        if (!each.remove) continue;
        for (const FileURL& folder : comparison.projectFoldersBelow(each.url))
            touched.add(folder, Depth::subtree);
    }
    return touched;
}

}  // namespace

void ClosingComparison::add(const TouchedFolders& touched) {
    for (const auto& [url, depth] : touched.folders) touched_.add(url, depth);
}

void ClosingComparison::takeEvents(FileEventBatch events) {
    const TouchedFolders touched = TouchedFolders::of(events);
    for (const FileEvent& event : events) eventId_ = std::max(eventId_, event.id);
    handler_.processFsEvents(std::move(events));
    const std::shared_ptr<Cache> cache = client_.cacheForEvents();
    // What was touched in an index that is left is looked at when that one is taken up again.
    if (touchedOf_.lock() != cache) touched_ = {};
    touchedOf_ = cache;
    if (cache) add(touched);
}

int ClosingComparison::compare(FunctionRef<bool()> moreEventsWait) {
    std::vector<Difference> differences;
    for (int round = 0; round <= kMaxRounds; round++) {
        const std::shared_ptr<const Project> project = client_.currentProject();
        const std::shared_ptr<Cache> cache = client_.cacheForEvents();
        if (!project || !cache || cache != touchedOf_.lock()) touched_ = {};
        if (!isDue() || cache->scanInProgress().value()) return round;
        if (round > 0 && moreEventsWait()) return round;
        FolderComparison comparison(*cache, *project);
        differences = comparison.differences(std::exchange(touched_, {}));
        if (differences.empty()) return round;
        if (round == kMaxRounds) break;
        handler_.processDifferences(differences, eventId_);
        touched_ = touchedBy(differences, comparison);
    }
    readAnew(differences);
    return kMaxRounds;
}

void ClosingComparison::readAnew(const std::vector<Difference>& differences) {
    const std::shared_ptr<const Project> project = client_.currentProject();
    const std::shared_ptr<Cache> cache = client_.cacheForEvents();
    if (!project || !cache) return;
    std::set<FileURL> folders;
    for (const Difference& each : differences) folders.insert(each.url.deletingLastPathComponent());
    for (const FileURL& folder : folders) {
        logWarning("The index of %s differs from the disk again and again", folder.c_str());
        // What events do not read must not be cleared either.
        if (FolderComparison(*cache, *project).isReadByEvents(folder))
            handler_.rescan(folder, eventId_);
    }
}
