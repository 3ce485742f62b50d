#pragma once
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "screen/Geometry.h"
#include "searchmodes/RankRequest.h"
#include "searchmodes/RegexPattern.h"

/// The regular expressions of a search string: terms with a plus sign must be found, terms with a
/// minus sign must not. Case plays no part. Terms that do not compile are left out.
/// Owner:   each ranking worker has its own.
/// Threads: one at a time; copy() also while nobody matches, from several at once.
/// Units:   positions are UTF-16 units.
/// Fails:   what the matcher cannot do is logged, once an expression, and the term is passed over.
///          Once stale is set, a match that runs ends within a millisecond, with false.
class RegexSearch final : public RegexEngine {
  public:
    /// stale outlives this; null: nothing ends a match.
    explicit RegexSearch(std::u16string_view searchString, const Relaxed<bool>* stale = nullptr);

    void setupForSearchString(std::u16string_view searchString);
    /// For another thread: what was compiled is shared.
    std::unique_ptr<RegexSearch> copy() const;
    /// For RankRequest::makeRegexEngine: the search string is compiled once, here.
    static std::function<std::unique_ptr<RegexEngine>(std::u16string_view)> maker(
        std::u16string_view searchString, const Relaxed<bool>* stale);

    size_t numberOfSearchTerms() const override { return inLen() + exLen(); }
    bool didExcludingSearchOnly() const override { return inLen() == 0 && exLen() > 0; }
    void ignoreStale() override;
    NameMask needOfAscii() const override;
    /// What did compile.
    size_t inLen() const { return inR_.size(); }
    size_t exLen() const { return exR_.size(); }

    /// Adds to indexes and totalScore; after false the caller drops what was added.
    bool match(std::u16string_view text, IndexSet& indexes, double& totalScore) override {
        return negativeMatch(text) && positiveMatch(text, &indexes, &totalScore);
    }
    bool negativeMatch(std::u16string_view text);
    /// Null: not wanted.
    bool positiveMatch(std::u16string_view text, IndexSet* indexes, double* totalScore);

  private:
    struct Expression {
        RegexPointer regexp;
        std::string literal;  // see requiredLiteral
        bool hasFailed = false;
    };
    enum class Outcome { notFound, found, failed };

    Expression expression(RegexPointer regexp, std::string literal) const;
    std::vector<Expression> copies(const std::vector<Expression>& expressions) const;
    Outcome find(Expression& expression, std::u16string_view text, TextRange* range = nullptr);
    bool isStale() const { return stale_ && *stale_; }

    const Relaxed<bool>* stale_;
    std::vector<std::u16string> in_, ex_;  // all terms with their signs
    std::vector<Expression> inR_, exR_;    // those that compile
};
