#pragma once
#include <unicode/uregex.h>

#include <cstdint>
#include <limits>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "datatypes/dictionary.h"

/// No position in a text.
constexpr int64_t kNotFound = std::numeric_limits<int64_t>::max();

struct RegexCloser {
    void operator()(URegularExpression* regexp) const { uregex_close(regexp); }
};
using RegexPointer = std::unique_ptr<URegularExpression, RegexCloser>;

/// How a rule's pattern was written, and what preprocess made of it.
enum PatternType : uint8_t {
    kPatternExact = 0,  // a name, or a path where it holds a slash
    kPatternGlob = 1,   // as written only
    kPatternRegexp = 2,
    kPatternPrefix = 3,  // prepared from a glob; so are the next two
    kPatternSuffix = 4,
    kPatternAnything = 5,
};

enum RuleType : uint8_t { kRuleExclude = 0, kRuleInclude = 1 };

/// One rule of a project folder or of the global lists: which items its pattern means. Prepared
/// once, then only read. A copy is prepared as its model is, at little cost: what is compiled never
/// changes, and the two share it.
/// Owner:   ProjectFolder, or whoever composes a list of rules. Threads: any, to read.
/// Fails:   a pattern that cannot be compiled leaves a rule that never matches.
class MatchingRule {
  public:
    MatchingRule() = default;
    /// Reads the three keys. Call preprocess after.
    explicit MatchingRule(const nlohmann::json& dictionary);

    nlohmann::json dictionaryRepresentation() const;
    /// Makes the prepared form from the original one; after each change of that.
    void preprocess();

    // As the user gave it. Bytes of a path that are no UTF-8 stand as in pathToText.
    std::optional<std::string> originalPattern;
    uint8_t originalPatternType = kPatternExact;
    uint8_t fileType = 7;  // mask of ItemType bits 1, 2, 4 that the rule is for

    /// Set by the holder of the rule, not stored.
    uint8_t type = kRuleExclude;

    // Prepared.
    std::optional<std::u16string> pattern;  // NFC; none for kPatternAnything and a written regexp
    int64_t patternSlashLocation = kNotFound;
    uint8_t patternType = kPatternExact;
    std::shared_ptr<const URegularExpression> regexp;  // to be cloned by each user

  private:
    void prepareGlob(const std::string& text);
    void setPattern(std::u16string text);
    void compile(std::u16string_view expression);

    dictionary::Original original_;
};

using MatchingRules = std::vector<MatchingRule>;

/// The rules of a stored list, prepared. What is no dictionary is left out.
MatchingRules matchingRules(std::span<const nlohmann::json> stored, uint8_t type);
