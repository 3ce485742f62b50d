#pragma once
#include <cstdint>
#include <optional>

#include "index/Cache.h"
#include "searchmodes/RankRequest.h"
#include "searchmodes/match_t.h"

/// Ranks every item of the cache against the request on workers of their own and merges what they
/// kept: the rows in their order, no more than the limit. All matches are added to totalMatches.
/// Nothing: the cache is empty, or the search was aborted.
/// Threads: the caller's, in its read section; it waits for the workers, which share that section.
std::optional<match_array_t> rankStringInSearchMode(const ReadSection& section, const Cache& cache,
                                                    const RankRequest& request,
                                                    int64_t& totalMatches);

/// How the items are shared out: as many workers as there are threads, but at least 5,000 items
/// each; the last takes the remainder.
std::vector<IndexRange> workerRanges(uint64_t items, unsigned threads);
