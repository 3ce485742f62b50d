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

int ClosingComparison::process(FileEventBatch events) {
    TouchedFolders touched = TouchedFolders::of(events);
    uint64_t eventId = 0;
    for (const FileEvent& event : events) eventId = std::max(eventId, event.id);
    handler_.processFsEvents(std::move(events));
    const std::shared_ptr<Cache> cache = client_.cacheForEvents();
    if (!cache) return 0;
    TouchedFolders earlier = std::exchange(postponed_, {});
    if (postponedOf_.lock() == cache)
        for (const auto& [url, depth] : earlier.folders) touched.add(url, depth);
    if (!cache->scanInProgress().value()) return compare(std::move(touched), eventId);
    postponed_ = std::move(touched);
    postponedOf_ = cache;
    return 0;
}

void ClosingComparison::readAnew(const std::vector<Difference>& differences, uint64_t eventId) {
    const std::shared_ptr<const Project> project = client_.currentProject();
    const std::shared_ptr<Cache> cache = client_.cacheForEvents();
    if (!project || !cache) return;
    std::set<FileURL> folders;
    for (const Difference& each : differences) folders.insert(each.url.deletingLastPathComponent());
    for (const FileURL& folder : folders) {
        logWarning("The index of %s differs from the disk again and again", folder.c_str());
        // What events do not read must not be cleared either.
        if (FolderComparison(*cache, *project).isReadByEvents(folder))
            handler_.rescan(folder, eventId);
    }
}

int ClosingComparison::compare(TouchedFolders touched, uint64_t eventId) {
    std::vector<Difference> differences;
    for (int round = 0; round <= kMaxRounds; round++) {
        const std::shared_ptr<const Project> project = client_.currentProject();
        const std::shared_ptr<Cache> cache = client_.cacheForEvents();
        if (!project || !cache) return round;
        FolderComparison comparison(*cache, *project);
        differences = comparison.differences(touched);
        if (differences.empty()) return round;
        if (round == kMaxRounds) break;
        handler_.processDifferences(differences, eventId);
        touched = touchedBy(differences, comparison);
    }
    readAnew(differences, eventId);
    return kMaxRounds;
}
