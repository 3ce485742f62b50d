#pragma once
#include <string>
#include <string_view>
#include <vector>

#include "screen/Geometry.h"

/// How a search string falls into terms: one rule for all engines and for the search field. Blanks
/// (U+0020 alone) part terms unless a backslash stands before them; the backslashes stay.
/// Threads: any.
std::vector<TextRange> indexesOfComponentsSeparatedByUnescapedWhitespace(std::u16string_view text);
std::vector<std::u16string> componentsSeparatedByUnescapedWhitespace(std::u16string_view text);

/// For texts whose diacritics are gone. In regular expressions the circumflex stays: there it is a
/// sign and no accent.
std::u16string searchStringByRemovingDiacritics(std::u16string_view text);
