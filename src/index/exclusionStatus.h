#pragma once
#include <cstdint>
#include <span>
#include <string_view>

#include "datatypes/MatchingRule.h"

enum exclusion_status_t : int32_t {
    kStatusExcluded = -1,
    kStatusNoRule = 0,
    kStatusIncluded = 1,
};

/// Whether one of the rules applies to an item; the first that matches decides.
/// path:      the item's path relative to its project folder, precomposed, beginning with "/".
/// lastPathComponentOffset: where the item's own name begins in it.
/// fileTypeMask: the item's type; the link flag has no say, so that a link counts as a file.
/// Threads: any number at once; a regular expression is cloned for each test.
/// Fails:   an ICU failure is logged, and that rule counts as no match.
exclusion_status_t exclusionStatus(std::u16string_view path, size_t lastPathComponentOffset,
                                   uint8_t fileTypeMask, std::span<const MatchingRule> patterns);

/// Unit by unit, case-sensitive; an empty candidate always is one.
inline bool stringHasPrefix(std::u16string_view string, std::u16string_view prefix) {
    return string.substr(0, prefix.size()) == prefix;
}
inline bool stringHasSuffix(std::u16string_view string, std::u16string_view suffix) {
    return string.size() >= suffix.size() && string.substr(string.size() - suffix.size()) == suffix;
}
