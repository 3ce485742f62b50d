#include "index/TouchedFolders.h"

#include <algorithm>

namespace {

TouchedFolders::Depth depthOf(uint32_t flags) {
    if (flags & (kFSEventStreamEventFlagItemRenamed | kFSEventStreamEventFlagMount |
                 kFSEventStreamEventFlagUnmount))
        return TouchedFolders::Depth::subtree;
    constexpr uint32_t kNew = kFSEventStreamEventFlagMustScanSubDirs |
                              kFSEventStreamEventFlagItemCreated |
                              kFSEventStreamEventFlagItemCloned;
    return flags & kNew ? TouchedFolders::Depth::asRead : TouchedFolders::Depth::entries;
}

}  // namespace

TouchedFolders TouchedFolders::of(const FileEventBatch& batch) {
    TouchedFolders touched;
    for (const FileEvent& event : batch) {
        const FileURL url = FileURL::standardized(event.path);
        if (event.flags == 0 || event.flags & kFSEventStreamEventFlagOwnEvent ||
            event.flags == kFSEventStreamEventFlagHistoryDone || !url.isAbsolute())
            continue;
        touched.add(url.deletingLastPathComponent(), Depth::entries);
        touched.add(url, depthOf(event.flags));
    }
    return touched;
}

void TouchedFolders::add(const FileURL& folder, Depth depth) {
    Depth& known = folders.try_emplace(folder, depth).first->second;
    known = std::max(known, depth);
}
