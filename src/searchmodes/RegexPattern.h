#pragma once
#include <string>
#include <string_view>

#include "datatypes/MatchingRule.h"
#include "searchmodes/PatternBudget.h"

/// The regular expression of a term, without its sign, as the search and the search field both
/// compile it: without regard to case. Threads: any, no state.

struct CompiledPattern {
    RegexPointer regexp;  // null where the text is no pattern
    UErrorCode error = U_ZERO_ERROR;
};
/// budget: of all terms of the text; what it does not allow is refused like what ICU finds too big.
CompiledPattern compilePattern(std::u16string_view text, PatternBudget& budget);

/// What the user reads about an error.
std::string regexErrorText(UErrorCode error);

/// ASCII text in lower case that stands in every ASCII text that the pattern is found in; empty
/// where there is none for certain. Only patterns without groups, alternatives and counts are
/// looked at: with them the matcher could also run out of stack, which counts as a match.
std::string requiredLiteral(std::u16string_view pattern);

/// Whether the text is ASCII without the literal, so that its pattern need not be tried.
bool isAsciiWithout(std::string_view literal, std::u16string_view text);
