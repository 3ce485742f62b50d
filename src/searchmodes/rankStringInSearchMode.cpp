#include "searchmodes/rankStringInSearchMode.h"

#include <algorithm>

#include "searchmodes/RankWorker.h"
#include "util/log.h"
#include "util/queues/OperationQueue.h"

namespace {

constexpr uint64_t kFewestItemsAWorker = 5000;

using Workers = std::vector<std::unique_ptr<RankWorker>>;

match_array_t makeRows(Workers& workers, const RankRequest& request) {
    std::vector<std::pair<RankedItem, RankWorker*>> all;
    for (auto& worker : workers)
        for (const RankedItem& item : worker->best()) all.emplace_back(item, worker.get());
    const auto before = [](const auto& a, const auto& b) { return ranksBefore(a.first, b.first); };
    const size_t kept = std::min<uint64_t>(request.limit, all.size());
    std::partial_sort(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(kept), all.end(),
                      before);
    match_array_t rows;
    rows.reserve(kept);
    for (size_t i = 0; i < kept && !request.isAborted(); i++)
        rows.push_back(all[i].second->makeMatch(all[i].first));
    return rows;
}

}  // namespace

std::vector<IndexRange> workerRanges(uint64_t items, unsigned threads) {
    // The thread count is a byte, as it always was.
    uint64_t count = std::max<uint64_t>(1, static_cast<uint8_t>(threads));
    while (count > 1 && items / count < kFewestItemsAWorker) count--;
    const uint64_t each = items / count;
    std::vector<IndexRange> ranges;
    for (uint64_t k = 0; k < count; k++)
        ranges.push_back({k * each, k + 1 < count ? each : items - k * each});
    return ranges;
}

std::optional<match_array_t> rankStringInSearchMode(const ReadSection& section, const Cache& cache,
                                                    const RankRequest& request,
                                                    int64_t& totalMatches) {
    const auto items = cache.items(section);
    const auto masks = cache.nameMasks(section);
    if (items.empty()) return std::nullopt;
    const std::vector<IndexRange> ranges = workerRanges(items.size(), request.numberOfThreads);
    logIf(processFlags.debugSearch, Debug,
          "Splitting total work of %llu items in %d units á %llu items",
          static_cast<unsigned long long>(items.size()), static_cast<int>(ranges.size()),
          static_cast<unsigned long long>(ranges.front().length));
    Workers workers(ranges.size());
    OperationQueue queue("searchWorkerQ", static_cast<unsigned>(ranges.size()),
                         Qos::userInteractive);
    for (size_t k = 0; k < ranges.size() && !request.isAborted(); k++)
        queue.addBlock([&, k] {
            logIf(processFlags.debugSearch, Debug, "%d: Processing records %llu - %llu from %llu",
                  static_cast<int>(k), static_cast<unsigned long long>(ranges[k].location),
                  static_cast<unsigned long long>(ranges[k].location + ranges[k].length),
                  static_cast<unsigned long long>(items.size()));
            workers[k] = std::make_unique<RankWorker>(request, items, masks);
            workers[k]->rank(ranges[k]);
        });
    queue.waitUntilAllOperationsAreFinished();
    if (request.isAborted()) {
        logIf(processFlags.debugSearch, Debug, "Search aborted");
        return std::nullopt;
    }
    for (const auto& worker : workers) totalMatches += static_cast<int64_t>(worker->total());
    match_array_t rows = makeRows(workers, request);
    if (request.isAborted()) return std::nullopt;
    logIf(processFlags.debugSearch, Debug, "Found %lu matching items",
          static_cast<unsigned long>(rows.size()));
    return rows;
}
