#include "searchmodes/FuzzySearch.h"

#include "searchmodes/SearchTerms.h"
#include "util/Unicode.h"

namespace {
/// A sign or a backslash in front belongs to the other engines, unless a backslash protects it.
bool isPlainTerm(std::u16string_view term) {
    if (term.starts_with(u"\\\\") || term.starts_with(u"\\+") || term.starts_with(u"\\-"))
        return true;
    return !term.starts_with(u'\\') && !term.starts_with(u'-') && !term.starts_with(u'+');
}
}  // namespace

void FuzzySearch::setupForSearchString(std::u16string_view searchString) {
    nonRegexSearchTerms_.clear();
    terms_.clear();
    for (std::u16string& term : componentsSeparatedByUnescapedWhitespace(searchString)) {
        if (!isPlainTerm(term)) continue;
        const std::u16string_view text(term);
        terms_.emplace_back(nfc(text.starts_with(u'\\') ? text.substr(1) : text));
        nonRegexSearchTerms_.push_back(std::move(term));
    }
}

bool FuzzySearch::match(std::u16string_view candidate, IndexSet& indexes,
                        double& totalScore) const {
    for (const RankTerm& term : terms_) {
        if (term.length() == 0) continue;
        const double score = term.rank(candidate, &indexes);
        if (!(score > 0)) return false;
        totalScore += score;
    }
    return true;
}
