#include "searchmodes/rankStringInSearchMode.h"

#include <algorithm>
#include <atomic>
#include <deque>

#include "searchmodes/RankWorker.h"
#include "util/log.h"
#include "util/queues/OperationQueue.h"

namespace {

constexpr uint64_t kFewestItemsAWorker = 5000;
constexpr uint64_t kItemsAtATime = 16384;

using Workers = std::vector<std::unique_ptr<RankWorker>>;

/// A range of items, of which workers take one piece after the other.
class Share {
  public:
    explicit Share(IndexRange range) : end_(range.location + range.length), next_(range.location) {}
    std::optional<IndexRange> take() {
        const uint64_t at = next_.fetch_add(kItemsAtATime, std::memory_order_relaxed);
        if (at >= end_) return std::nullopt;
        return IndexRange{at, std::min(kItemsAtATime, end_ - at)};
    }

  private:
    const uint64_t end_;
    std::atomic<uint64_t> next_;
};

/// Ranks a worker's own share, and then what is left of the others': on a processor that has other
/// things to do a worker is slow. False: aborted.
bool rankShares(RankWorker& worker, std::deque<Share>& shares, size_t own) {
    for (size_t i = 0; i < shares.size(); i++) {
        Share& share = shares[(own + i) % shares.size()];
        while (const auto piece = share.take())
            if (!worker.rank(*piece)) return false;
    }
    return worker.finish();
}

/// Merges what the workers kept, which each has in the order of the rows. Nothing: aborted.
std::optional<match_array_t> makeRows(Workers& workers, const RankRequest& request) {
    struct Cursor {
        RankWorker* worker;
        size_t next = 0;
        const RankedItem& item() const { return worker->best()[next]; }
    };
    std::vector<Cursor> cursors;
    size_t kept = 0;
    for (const auto& worker : workers) {
        if (!worker->best().empty()) cursors.push_back({worker.get()});
        kept += worker->best().size();
    }
    kept = std::min<uint64_t>(request.limit, kept);
    const RowOrder order = workers.front()->order();
    const auto later = [&](const Cursor& a, const Cursor& b) { return order(b.item(), a.item()); };
    std::make_heap(cursors.begin(), cursors.end(), later);
    match_array_t rows;
    rows.reserve(kept);
    while (rows.size() < kept) {
        if (request.isAborted()) return std::nullopt;
        std::pop_heap(cursors.begin(), cursors.end(), later);
        Cursor& first = cursors.back();
        rows.push_back(first.worker->makeMatch(first.item()));
        if (++first.next < first.worker->best().size())
            std::push_heap(cursors.begin(), cursors.end(), later);
        else
            cursors.pop_back();
    }
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
    std::deque<Share> shares(ranges.begin(), ranges.end());
    Workers workers(ranges.size());
    std::atomic<size_t> finished = 0;
    {
        OperationQueue queue("searchWorkerQ", static_cast<unsigned>(ranges.size()),
                             Qos::userInteractive);
        for (size_t k = 0; k < ranges.size() && !request.isAborted(); k++)
            queue.addBlock([&, k] {
                logIf(processFlags.debugSearch, Debug,
                      "%d: Processing records %llu - %llu from %llu", static_cast<int>(k),
                      static_cast<unsigned long long>(ranges[k].location),
                      static_cast<unsigned long long>(ranges[k].location + ranges[k].length),
                      static_cast<unsigned long long>(items.size()));
                workers[k] = std::make_unique<RankWorker>(request, items, masks);
                if (rankShares(*workers[k], shares, k)) finished++;
            });
        queue.waitUntilAllOperationsAreFinished();
    }
    std::optional<match_array_t> rows;
    if (finished == ranges.size() && !request.isAborted()) rows = makeRows(workers, request);
    if (!rows) {
        logIf(processFlags.debugSearch, Debug, "Search aborted");
        return std::nullopt;
    }
    for (const auto& worker : workers) totalMatches += static_cast<int64_t>(worker->total());
    logIf(processFlags.debugSearch, Debug, "Found %lu matching items",
          static_cast<unsigned long>(rows->size()));
    return rows;
}
