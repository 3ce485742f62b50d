#include "Ops.h"
#include "Session.h"
#include "index/consolidateEvents.h"
#include "index/fsEventFlagNames.h"

/// File-system events of the request's, in place of a source's.
namespace ops {

namespace {

uint32_t flagsFrom(const Fields& event) {
    uint32_t flags = 0;
    for (const json& name : event.list("flags")) {
        const uint32_t flag =
            name.is_string() ? fsEventFlagWithName(name.get_ref<const std::string&>()) : 0;
        if (flag == 0) event.illTyped("flags", "a list of names of event flags");
        flags |= flag;
    }
    return flags;
}

}  // namespace

/// With "compare" the folders that the batch touched are compared with the disk afterwards.
json cacheEvents(const Fields& request, Session& session) {
    CacheSession& cache = session.cacheSession();
    FileEventBatch batch;
    for (const Fields& event : request.objects("batch"))
        batch.push_back({.id = event.integer<uint64_t>("id"),
                         .flags = flagsFrom(event),
                         .path = event.absolutePath("path").path()});
    const bool compares = request.boolean("compare", false);
    int rounds = 0;
    projectFsEventCallback(batch, [&](FileEventBatch events) {
        if (compares)
            rounds = cache.processAndCompare(std::move(events));
        else
            cache.processFsEvents(std::move(events));
    });
    if (!compares) return {};
    return {{"rounds", rounds}};
}

}  // namespace ops
