#include <algorithm>
#include <thread>

#include "Dump.h"
#include "Ops.h"
#include "Session.h"
#include "Stopwatch.h"
#include "Surrogates.h"
#include "index/checkTree.h"
#include "searchmodes/MetaDataSearch.h"
#include "searchmodes/RegexSearch.h"
#include "searchmodes/rankStringInSearchMode.h"
#include "util/ProcessFlags.h"
#include "util/Unicode.h"
#include "util/settings/OVUserDefaults.h"

/// What stands in the cache, and searches in it.
namespace ops {

namespace {

RankRequest rankRequestFrom(const Fields& request, const Project* project) {
    const auto& settings = OVUserDefaults::sharedInstance();
    const unsigned processors = std::max(std::thread::hardware_concurrency(), 2u);
    RankRequest search{.searchString = request.text("search"),
                       .bundlesAsFiles = settings.boolForKey("treatBundlesAsFiles"),
                       .processMetadata = processFlags.processMetadata,
                       .numberOfThreads = request.integer<uint8_t>(
                           "threads", static_cast<uint8_t>(std::min(processors - 1, 255u))),
                       .limit = resultLimit(request.integer<int64_t>(
                           "limit", settings.integerForKey("maxResultsetSize")))};
    if (project) {
        search.showFiles = (project->visibleItemType & 1) != 0;
        search.showDirectories = (project->visibleItemType & 2) != 0;
        search.filenameOnly = project->matchFilenameOnly;
        search.ignoreDiacritics = project->ignoreDiacritics;
    }
    if (search.ignoreDiacritics)
        search.searchString = stringByRemovingDiacritics(search.searchString);
    search.makeMetadataEngine =
        MetaDataSearch::engineMaker(search.searchString, World::current().clock().time());
    return search;
}

}  // namespace

json cacheDump(const Fields& request, Session& session) {
    return dumpOf(session.cacheSession().cache(), request);
}

json cacheRecent(const Fields&, Session& session) {
    json items = json::array();
    for (const RecentItem& item : session.cacheSession().cache().recentItems())
        items.push_back({{"path", carriedFromPath(item.url.path())},
                         {"inode", item.inode},
                         {"type", item.type},
                         {"change", item.change}});
    return {{"items", std::move(items)}};
}

json cacheFacts(const Fields&, Session& session) {
    const Cache& cache = session.cacheSession().cache();
    return {{"count", cache.count()},
            {"lastEventId", cache.lastEventStreamEventId()},
            {"nextEventId", cache.nextFsEventId()},
            {"updateDue", cache.resultListUpdateDue()}};
}

json cacheSearch(const Fields& request, Session& session) {
    Cache& cache = session.cacheSession().cache();
    RankRequest search = rankRequestFrom(request, session.cacheSession().project());
    search.makeRegexEngine = RegexSearch::maker(search.searchString, nullptr);
    int64_t total = 0;
    double seconds = 0;
    json rows = json::array();
    cache.performBlockReadOnly([&](const ReadSection& section) {
        const Stopwatch stopwatch;
        const auto matches = rankStringInSearchMode(section, cache, search, total);
        seconds = stopwatch.seconds();
        if (!matches) return;
        for (const match_ptr& match : *matches)
            rows.push_back({{"path", carriedFromPath(fs_item_url(match->item).path())},
                            {"score", match->score},
                            {"depth", match->depth},
                            {"indexes", match->matchedIndexes.items()}});
    });
    return {{"total", total}, {"seconds", seconds}, {"rows", std::move(rows)}};
}

/// What must hold of the tree and the array and does not, or null.
json cacheCheck(const Fields&, Session& session) {
    const std::string problem = checkTree(session.cacheSession().cache());
    json text;
    if (!problem.empty()) text = problem;
    return {{"problem", std::move(text)}};
}

}  // namespace ops
