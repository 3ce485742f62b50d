#pragma once
#include <string>
#include <string_view>

#include "searchmodes/Decomposition.h"
#include "searchmodes/FuzzySearch.h"
#include "searchmodes/RegexSearch.h"
#include "searchmodes/SearchTerms.h"
#include "util/Unicode.h"

/// What must hold of every search text, for the tests and the fuzzer alike.
namespace decompositionCheck {

inline size_t endOf(TextRange range) {
    return range.location + range.length;
}
inline bool isInside(TextRange inner, const std::vector<TextRange>& ranges) {
    for (const TextRange& range : ranges)
        if (inner.location >= range.location && endOf(inner) <= endOf(range)) return true;
    return false;
}

/// Stands for the parser of queries: every answer that it could give, and some that it should not.
inline MetaDataParse anyAnswer(std::u16string_view term) {
    uint64_t seed = 0;
    for (const char16_t unit : term) seed = seed * 31 + unit;
    MetaDataParse parsed;
    if (seed % 3 == 0) parsed.query = MetaDataQuery{.criterion = seed % 4097};
    if (seed % 5 < 3) parsed.errorString = seed % 5 ? "Incomplete query." : "";
    if (seed % 7 < 5)
        parsed.errorLocation = static_cast<int64_t>(seed % 11) - 5;
    else if (seed % 7 == 5)
        parsed.errorLocation = seed % 2 ? INT64_MIN : INT64_MAX;
    for (size_t n = seed % 4; n > 0; n--) parsed.suggestions.push_back({"[0..9]", "Size"});
    return parsed;
}

inline std::string troubleWithComponents(std::u16string_view text,
                                         const std::vector<TextRange>& components) {
    size_t end = 0;
    for (const TextRange& range : components) {
        if (range.length == 0 || range.location < end || endOf(range) > text.size())
            return "components overlap or leave the text";
        // What is left out has no content.
        const auto between = text.substr(end, range.location - end);
        if (between.find_first_not_of(u" \\") != text.npos) return "a component is missing";
        end = endOf(range);
    }
    const bool rest = text.substr(end).find_first_not_of(u" \\") != text.npos;
    return rest ? "the last component is missing" : "";
}

inline std::string troubleWithMessages(const RangeMessages& messages, size_t length,
                                       const std::vector<TextRange>& components) {
    size_t start = 0;
    for (const auto& [range, message] : messages.all()) {
        if (range.location < start || !isInside(range, components))
            return "messages are out of order or outside of the terms";
        if (plainText(message.message).empty()) return "a message says nothing";
        start = endOf(range);
    }
    for (size_t place = 0; place <= length; place++) {
        bool any = false;
        for (const auto& each : messages.all())
            any |= each.first.location <= place && place <= endOf(each.first);
        if (any != (messages.messageForRange({place, 0}) != nullptr))
            return "a message is not found at the cursor";
    }
    return "";
}

}  // namespace decompositionCheck

/// Empty where all is well. text: any.
inline std::string troubleWithSearchText(std::u16string_view typed, bool processMetadata,
                                         bool listsFiles) {
    using namespace decompositionCheck;
    const std::u16string text = nfc(typed);
    const std::vector<TextRange> components =
        indexesOfComponentsSeparatedByUnescapedWhitespace(text);
    if (std::string trouble = troubleWithComponents(text, components); !trouble.empty())
        return trouble;
    const Decomposition made =
        decompose(text, {.processMetadata = processMetadata,
                         .listsFiles = listsFiles,
                         .parser = [](std::u16string_view term) { return anyAnswer(term); }});
    size_t end = 0, expressions = 0;
    for (const auto& [range, style] : made.styles) {
        if (range.length == 0 || range.location < end || !isInside(range, components))
            return "styles overlap or leave their terms";
        if (style == TermStyle::plain) return "a plain style is listed";
        end = endOf(range);
        expressions += style == TermStyle::regexp;
    }
    // The engines take the terms that the field shows as theirs.
    const RegexSearch regex(text);
    if (regex.numberOfSearchTerms() != expressions)
        return "other terms than the engine's are shown";
    if (FuzzySearch(text).terms().size() + expressions > components.size())
        return "two engines take the same term";
    return troubleWithMessages(made.rangeMessages, text.size(), components);
}
