#include "searchmodes/SearchTerms.h"

#include "util/Unicode.h"

namespace {

std::u16string keepingCircumflexes(std::u16string_view term) {
    std::u16string kept;
    for (size_t begin = 0;;) {
        const size_t end = term.find(u'^', begin);
        kept += stringByRemovingDiacritics(term.substr(begin, end - begin));
        if (end == term.npos) return kept;
        kept += u'^';
        begin = end + 1;
    }
}

}  // namespace

std::vector<TextRange> indexesOfComponentsSeparatedByUnescapedWhitespace(std::u16string_view text) {
    std::vector<TextRange> ranges;
    bool escaped = false, content = false;
    size_t start = 0;
    for (size_t i = 0; i < text.size(); i++) {
        const char16_t unit = text[i];
        if (unit == u'\\') {
            escaped = true;  // Kept: a second backslash escapes the blank behind it all the same
            continue;
        }
        if (unit == u' ' && !escaped) {
            if (content) ranges.push_back({start, i - start});
            content = false;
            start = i + 1;
        } else if (unit != u' ') {
            content = true;
        }
        escaped = false;
    }
    if (start < text.size() && (content || text.back() == u'\\'))
        ranges.push_back({start, text.size() - start});
    return ranges;
}

std::vector<std::u16string> componentsSeparatedByUnescapedWhitespace(std::u16string_view text) {
    std::vector<std::u16string> components;
    for (const TextRange& range : indexesOfComponentsSeparatedByUnescapedWhitespace(text))
        components.emplace_back(text.substr(range.location, range.length));
    return components;
}

std::u16string searchStringByRemovingDiacritics(std::u16string_view text) {
    std::u16string removed;
    size_t behind = 0;
    for (const TextRange& range : indexesOfComponentsSeparatedByUnescapedWhitespace(text)) {
        removed += text.substr(behind, range.location - behind);
        behind = range.location + range.length;
        const std::u16string_view term = text.substr(range.location, range.length);
        removed += term[0] == u'+' || term[0] == u'-' ? keepingCircumflexes(term)
                                                      : stringByRemovingDiacritics(term);
    }
    return removed.append(text.substr(behind));
}
