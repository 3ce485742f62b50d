#pragma once
#include <array>
#include <cstddef>
#include <cstdint>

/// What the choice of runs found out about a match. Not initialised: made for each candidate.
struct RankCounts {
    uint64_t runs;
    uint64_t wordHits;    // units hit on a word start, for upper-case filter units
    uint64_t firstStart;  // position of the first run
    uint64_t wordStarts;  // in the whole candidate
};

/// The score of a match of filterLength units in a candidate of candidateLength. How many runs
/// there are dominates; an earlier start, the share of word starts that were hit and the share of
/// the candidate that is covered break ties. The order of the operations is part of the result.
inline double rankScore(uint64_t filterLength, uint64_t candidateLength, const RankCounts& counts) {
    const auto l = static_cast<double>(filterLength), n = static_cast<double>(candidateLength);
    const auto w = static_cast<double>(counts.wordHits), r = static_cast<double>(counts.runs);
    const auto f = static_cast<double>(counts.firstStart);
    const auto t = static_cast<double>(counts.wordStarts);
    const double d = l * l + l + 1;
    const double a = counts.wordHits == filterLength ? d - 1 : d - ((l - w) + r * l);
    double s = a / d;
    s = ((n - f) / n) / (d + d) + s;
    if (counts.wordStarts) s = (w / t) / (d * 4) + s;
    return (l / n) / (d * 8) + s;
}

/// For rough scores: 1 / n.
inline constexpr auto kInverses = [] {
    std::array<double, 256> inverses{};
    for (size_t i = 1; i < inverses.size(); i++) inverses[i] = 1.0 / static_cast<double>(i);
    return inverses;
}();
