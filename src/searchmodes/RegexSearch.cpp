#include "searchmodes/RegexSearch.h"

#include <unicode/utf16.h>

#include "searchmodes/SearchTerms.h"
#include "searchmodes/StringRanker.h"
#include "searchmodes/rankScore.h"
#include "util/Unicode.h"
#include "util/log.h"

namespace {

bool goesOn(const void* stale) {
    return !*static_cast<const Relaxed<bool>*>(stale);
}

/// Terms that are found in every text.
bool matchesAnything(std::u16string_view term) {
    return term == u"+.*" || term == u"+^.*" || term == u"+.*$" || term == u"+^.*$";
}
bool matchesAnyEnd(std::u16string_view term) {
    return term == u"+^" || term == u"+$";
}

/// No NUL, no half of a character: so for all text that comes from names.
bool isProperText(std::u16string_view text) {
    for (size_t i = 0; i < text.size(); i++) {
        if (text[i] == 0) return false;
        if (!U16_IS_SURROGATE(text[i])) continue;
        if (i + 1 == text.size() || !U16_IS_LEAD(text[i]) || !U16_IS_TRAIL(text[i + 1]))
            return false;
        i++;
    }
    return true;
}

/// What StringRanker gives for a part of the candidate without choosing positions.
double scoreOfPart(std::u16string_view candidate, const TextRange& range) {
    const std::u16string_view part = candidate.substr(range.location, range.length);
    if (part.empty()) return 0;
    if (part.size() == candidate.size()) return 1;
    if (!isProperText(candidate))  // it may even refuse that
        return StringRanker::rankString(
            candidate, {.usingFilter = part, .usingLcFilter = part, .unifyCase = false}, nullptr);
    return rankScore(part.size(), candidate.size(),
                     {.runs = 0, .wordHits = 0, .firstStart = 0, .wordStarts = 0});
}

}  // namespace

RegexSearch::RegexSearch(std::u16string_view searchString, const Relaxed<bool>* stale)
    : stale_(stale) {
    setupForSearchString(searchString);
}

void RegexSearch::setupForSearchString(std::u16string_view searchString) {
    in_.clear();
    ex_.clear();
    inR_.clear();
    exR_.clear();
    PatternBudget budget;
    for (std::u16string& term : componentsSeparatedByUnescapedWhitespace(nfc(searchString))) {
        if (term.size() < 2 || (term[0] != u'+' && term[0] != u'-')) continue;
        const bool positive = term[0] == u'+';
        const std::u16string_view pattern = std::u16string_view(term).substr(1);
        if (CompiledPattern compiled = compilePattern(pattern, budget); compiled.regexp)
            (positive ? inR_ : exR_)
                .push_back(expression(std::move(compiled.regexp), requiredLiteral(pattern)));
        (positive ? in_ : ex_).push_back(std::move(term));
    }
}

RegexSearch::Expression RegexSearch::expression(RegexPointer regexp, std::string literal) const {
    if (stale_) {
        UErrorCode status = U_ZERO_ERROR;
        uregex_setMatchCallback(
            regexp.get(), [](const void* stale, int32_t) -> UBool { return goesOn(stale); }, stale_,
            &status);
        uregex_setFindProgressCallback(
            regexp.get(), [](const void* stale, int64_t) -> UBool { return goesOn(stale); }, stale_,
            &status);
    }
    return {std::move(regexp), std::move(literal)};
}

std::vector<RegexSearch::Expression> RegexSearch::copies(
    const std::vector<Expression>& expressions) const {
    std::vector<Expression> all;
    for (const Expression& each : expressions) {
        UErrorCode status = U_ZERO_ERROR;
        RegexPointer regexp(uregex_clone(each.regexp.get(), &status));
        if (U_SUCCESS(status)) all.push_back(expression(std::move(regexp), each.literal));
    }
    return all;
}

std::unique_ptr<RegexSearch> RegexSearch::copy() const {
    auto copied = std::make_unique<RegexSearch>(std::u16string_view(), stale_);
    copied->in_ = in_;
    copied->ex_ = ex_;
    copied->inR_ = copied->copies(inR_);
    copied->exR_ = copied->copies(exR_);
    return copied;
}

std::function<std::unique_ptr<RegexEngine>(std::u16string_view)> RegexSearch::maker(
    std::u16string_view searchString, const Relaxed<bool>* stale) {
    return [model = std::make_shared<const RegexSearch>(searchString, stale),
            of = std::u16string(searchString),
            stale](std::u16string_view text) -> std::unique_ptr<RegexEngine> {
        if (text != of) return std::make_unique<RegexSearch>(text, stale);
        return model->copy();
    };
}

void RegexSearch::ignoreStale() {
    stale_ = nullptr;
    for (auto* const expressions : {&inR_, &exR_}) {
        for (Expression& each : *expressions) {
            UErrorCode status = U_ZERO_ERROR;
            uregex_setMatchCallback(each.regexp.get(), nullptr, nullptr, &status);
            uregex_setFindProgressCallback(each.regexp.get(), nullptr, nullptr, &status);
        }
    }
}

NameMask RegexSearch::needOfAscii() const {
    NameMask need = 0;
    for (size_t k = 0; k < inR_.size(); k++) {
        if (matchesAnything(in_[k]) || matchesAnyEnd(in_[k])) continue;
        for (const char letter : inR_[k].literal)
            need |= presenceOf(static_cast<unsigned char>(letter));
    }
    return need;
}

RegexSearch::Outcome RegexSearch::find(Expression& expression, std::u16string_view text,
                                       TextRange* range) {
    if (!expression.literal.empty() && isAsciiWithout(expression.literal, text))
        return Outcome::notFound;
    const auto failed = [&](const char* what, UErrorCode status) {
        if (!expression.hasFailed && !isStale())
            logError("Failed to %s regex: %s", what, u_errorName(status));
        expression.hasFailed = true;
        return Outcome::failed;
    };
    UErrorCode status = U_ZERO_ERROR;
    // A view may be empty without pointing anywhere, which ICU refuses.
    uregex_setText(expression.regexp.get(), text.empty() ? u"" : text.data(),
                   static_cast<int32_t>(text.size()), &status);
    if (U_FAILURE(status)) return failed("set text to", status);
    const bool found = uregex_find(expression.regexp.get(), -1, &status) != 0;
    int32_t start = 0, end = 0;
    if (found && range) {
        start = uregex_start(expression.regexp.get(), 0, &status);
        end = uregex_end(expression.regexp.get(), 0, &status);
        *range = {static_cast<size_t>(start), static_cast<size_t>(end - start)};
    }
    if (U_FAILURE(status)) return failed("find", status);
    return found ? Outcome::found : Outcome::notFound;
}

bool RegexSearch::negativeMatch(std::u16string_view text) {
    for (Expression& expression : exR_)
        if (find(expression, text) == Outcome::found || isStale()) return false;
    return true;
}

bool RegexSearch::positiveMatch(std::u16string_view text, IndexSet* indexes, double* totalScore) {
    const double full = static_cast<double>(text.size()) * -0.001 + 1.0;
    for (size_t k = 0; k < inR_.size(); k++) {
        // Kept: behind a term that does not compile, term k and expression k are not the same.
        const std::u16string& term = in_[k];
        if (matchesAnything(term)) {
            if (totalScore) *totalScore += full;
            // Kept: the last unit stays unmarked.
            if (indexes && text.size() > 1) indexes->addRange(0, text.size() - 1);
            continue;
        }
        if (matchesAnyEnd(term)) {
            if (totalScore) *totalScore += full;
            continue;
        }
        TextRange range;
        switch (find(inR_[k], text, &range)) {
            case Outcome::notFound:
                return false;
            case Outcome::failed:
                if (isStale()) return false;
                break;
            case Outcome::found:
                if (totalScore) *totalScore += scoreOfPart(text, range);
                if (indexes) indexes->addRange(range.location, range.length);
        }
    }
    return true;
}
