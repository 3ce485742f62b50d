#include "searchmodes/Decomposition.h"

#include <algorithm>

#include "searchmodes/RegexPattern.h"
#include "searchmodes/SearchTerms.h"

namespace {

using Look = StyledSpan::Look;
using Suggestions = std::vector<MetaDataSuggestion>;

/// lead, what it is about, and pairs of a token and what it means. The last blank goes.
StyledText messageText(const std::string& lead, const char* purpose, const Suggestions& pairs) {
    StyledText text;
    if (!lead.empty()) text.push_back({lead + " ", pairs.empty() ? Look::plain : Look::strong});
    if (!pairs.empty()) text.push_back({purpose, Look::plain});
    for (const auto& [token, description] : pairs) {
        text.push_back({token, Look::token});
        text.push_back({" " + description + " ", Look::plain});
    }
    text.back().text.pop_back();
    return text;
}

class Decomposer {
  public:
    Decomposer(std::u16string_view text, const DecompositionOptions& options)
        : text_(text), options_(options) {}

    Decomposition decompose() {
        for (const TextRange& range : indexesOfComponentsSeparatedByUnescapedWhitespace(text_))
            processSearchStringComponent(text_.substr(range.location, range.length),
                                         {range.location + 1, range.length - 1});
        return std::move(made_);
    }

  private:
    /// range: of the component without its first character. So in all below.
    void processSearchStringComponent(std::u16string_view component, TextRange range) {
        if (component[0] == u'+' || component[0] == u'-')
            processSearchStringRegexpComponent(component, range);
        else if (component[0] != u'\\')
            return;
        else if (!options_.processMetadata)
            processSearchStringMetadataWithoutMetadataProcessingComponent(component, range);
        else if (options_.listsFiles)
            processSearchStringMetadataComponent(component, range);
    }

    void processSearchStringRegexpComponent(std::u16string_view component, TextRange range) {
        if (component.size() == 1) {
            const TextRange sign{range.location - 1, 1};
            made_.rangeMessages.addRangeWithInfo(sign, {{"Missing regular expression."}});
            return setStyle(sign, TermStyle::incomplete);
        }
        const CompiledPattern compiled = compilePattern(component.substr(1), budget_);
        if (compiled.regexp) return setStyle(range, TermStyle::regexp);
        made_.rangeMessages.addRangeWithError(range, {{regexErrorText(compiled.error)}});
        setStyle(range, TermStyle::error);
    }

    /// The only use of a backslash is then to protect a sign or another backslash.
    void processSearchStringMetadataWithoutMetadataProcessingComponent(
        std::u16string_view component, TextRange range) {
        const char* signs = "[\\+-]";
        if (component.size() == 1) {
            const TextRange backslash{range.location - 1, 1};
            made_.rangeMessages.addRangeWithInfo(
                backslash, messageText("Incomplete query.", "Expecting: ", {{signs, signs}}));
            return setStyle(backslash, TermStyle::incomplete);
        }
        if (component[1] == u'+' || component[1] == u'-' || component[1] == u'\\') return;
        made_.needsMetadata = true;
        const TextRange wrong{range.location, 1};
        made_.rangeMessages.addRangeWithInfo(
            wrong, messageText("Invalid escape sequence.", "Expecting: ", {{signs, signs}}));
        setStyle(wrong, TermStyle::error);
    }

    void processSearchStringMetadataComponent(std::u16string_view component, TextRange range) {
        const MetaDataParse parsed = options_.parser(component);
        const size_t end = range.location + range.length;
        if (parsed.query) {
            made_.visibleAttributes.add(parsed.query->criterion);
            if (!parsed.suggestions.empty())
                made_.rangeMessages.addRangeWithInfo(
                    {end, 0}, messageText("", "Accepting: ", parsed.suggestions));
            return;
        }
        const std::string error = parsed.errorString.value_or("");
        if (error.empty() && parsed.suggestions.empty()) return;
        const int64_t location = parsed.errorLocation.value_or(0);
        const uint64_t place =
            location < 0 ? 0 - static_cast<uint64_t>(location) : static_cast<uint64_t>(location);
        const size_t start = range.location - 1 + std::min<uint64_t>(place, component.size());
        const TextRange marked{start, end - start};
        made_.rangeMessages.addRangeWithInfo(marked,
                                             messageText(error, "Expecting: ", parsed.suggestions));
        setStyle(marked, location > 0 ? TermStyle::error : TermStyle::incomplete);
    }

    void setStyle(TextRange range, TermStyle style) {
        if (range.length > 0) made_.styles.push_back({range, style});
    }

    const std::u16string_view text_;
    const DecompositionOptions& options_;
    PatternBudget budget_;
    Decomposition made_;
};

}  // namespace

Decomposition decompose(std::u16string_view text, const DecompositionOptions& options) {
    return Decomposer(text, options).decompose();
}
