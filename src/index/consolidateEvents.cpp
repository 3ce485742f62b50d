#include "index/consolidateEvents.h"

#include <algorithm>

#include "index/fsEventFlagNames.h"
#include "index/trace.h"

void consolidateEvents(FileEventBatch& events, bool debug) {
    if (events.size() < 2) return;
    std::stable_sort(events.begin(), events.end(),
                     [](const FileEvent& a, const FileEvent& b) { return a.id < b.id; });
    size_t kept = 1;
    for (size_t i = 1; i < events.size(); i++) {
        FileEvent& event = events[i];
        if (event.id == events[kept - 1].id) {
            logIf(debug, Info, "Removing duplicate event %llu [%s; %s]", EventId{event.id},
                  fsEventFlagNames(event.flags).c_str(), event.path.c_str());
            continue;
        }
        if (kept != i) events[kept] = std::move(event);
        kept++;
    }
    events.resize(kept);
}

void projectFsEventCallback(const FileEventBatch& events,
                            FunctionRef<void(FileEventBatch)> addOperation) {
    FileEventBatch copy;
    for (const FileEvent& event : events)
        if (event.flags != 0) copy.push_back(event);
    if (!copy.empty()) addOperation(std::move(copy));
}
