#include <sys/stat.h>

#include <bit>
#include <optional>

#include "Ops.h"
#include "Session.h"
#include "Stopwatch.h"
#include "Stored.h"
#include "index/Metadata.h"
#include "util/ProcessFlags.h"

/// One cache at a time, on the real file system: how it is made and changed.
namespace ops {

namespace {

/// What the disk says of a path, for what a request leaves out.
struct OnDisk {
    explicit OnDisk(const FileURL& url) : exists(statItem(url.c_str(), stat)) {}
    uint64_t inode() const { return exists ? stat.stx_ino : 0; }
    uint8_t type() const {
        if (!exists) return ITEM_FILE;
        if (S_ISLNK(stat.stx_mode)) return ITEM_FILE | ITEM_SYMLINK;
        return S_ISDIR(stat.stx_mode) ? ITEM_DIRECTORY : ITEM_FILE;
    }
    metadata_ptr metadata() const {
        return processFlags.processMetadata && exists ? metadataFromStatBuf(&stat) : nullptr;
    }

    struct statx stat {};
    const bool exists;
};

/// A mask of exactly one kind, plus the flag of a link.
uint8_t itemType(const Fields& request, std::optional<uint8_t> fallback = {}) {
    const auto type =
        fallback ? request.integer<uint8_t>("type", *fallback) : request.integer<uint8_t>("type");
    if (type > 15 || !std::has_single_bit(static_cast<uint8_t>(type & ~ITEM_SYMLINK)))
        request.illTyped("type", "1, 2 or 4, plus 8 for a link");
    return type;
}

/// An object in stored form; null where it is left out.
json storedObject(const Fields& request, std::string_view name) {
    const json* given = request.find(name);
    if (!given) return nullptr;
    if (!given->is_object()) request.illTyped(name, "an object");
    return storedFromCarried(*given);
}

}  // namespace

json cacheNew(const Fields& request, Session& session) {
    json settings = storedObject(request, "settings");
    if (settings.is_null()) settings = json::object();
    if (request.find("processMetadata"))
        settings["processMetadata"] = request.boolean("processMetadata", false);
    if (request.find("recentItemsMaxCount"))
        settings["recentItemsMaxCount"] = request.integer<int64_t>("recentItemsMaxCount");
    const json project = storedObject(request, "project");
    session.app.reset();  // there is one World at a time
    session.cache.reset();
    session.cache = std::make_unique<CacheSession>(settings, project);
    return {};
}

json cacheScan(const Fields&, Session& session) {
    CacheSession& cache = session.cacheSession();
    if (!cache.project()) throw OpError("there is no project: cache.new takes one");
    const Stopwatch stopwatch;
    if (!cache.scan()) throw OpError("the scan was ended early");
    return {{"items", cache.cache().count()}, {"seconds", stopwatch.seconds()}};
}

json cacheAdd(const Fields& request, Session& session) {
    Cache& cache = session.cacheSession().cache();
    const FileURL url = request.absolutePath("path");
    const OnDisk onDisk(url);
    const AddPathResult result =
        cache.addPath(url, {.ofType = itemType(request),
                            .inode = request.integer<uint64_t>("inode", onDisk.inode()),
                            .metadata = onDisk.metadata(),
                            .fsEventId = request.integer<uint64_t>("eventId", 0),
                            .changeType = request.integer<uint8_t>("change", 0)});
    return {{"added", result.item != nullptr}, {"existed", result.alreadyExists}};
}

json cacheMove(const Fields& request, Session& session) {
    Cache& cache = session.cacheSession().cache();
    const FileURL from = request.absolutePath("from");
    const FileURL to = request.absolutePath("to");
    const OnDisk onDisk(to);
    const MoveStatus status =
        cache.movePath(from, to,
                       {.fromInode = request.integer<uint64_t>("fromInode", onDisk.inode()),
                        .toInode = request.integer<uint64_t>("toInode", onDisk.inode()),
                        .ofType = itemType(request, onDisk.type()),
                        .forFsEventId = request.integer<uint64_t>("eventId", 0),
                        .includeInRecentItems = request.boolean("recent", false)});
    return {{"status", static_cast<int32_t>(status)}};
}

json cacheRemove(const Fields& request, Session& session) {
    Cache& cache = session.cacheSession().cache();
    cache.removePath(request.absolutePath("path"), request.integer<uint64_t>("eventId", 0));
    return {};
}

json cacheRefreshed(const Fields&, Session& session) {
    session.cacheSession().cache().resultListUpdated();
    return {};
}

json cacheRefreshNow(const Fields&, Session& session) {
    session.cacheSession().cache().setNextResultListUpdateDue();
    return {};
}

}  // namespace ops
