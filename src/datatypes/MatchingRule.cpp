#include "datatypes/MatchingRule.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>

#include "util/Unicode.h"
#include "util/log.h"

namespace {

void replaceAll(std::string& text, std::string_view from, std::string_view to) {
    for (size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size())
        text.replace(at, from.size(), to);
}

/// Translated by literal replacements over the whole text, in this order. The marker keeps the
/// asterisk of "/**/" away from the one that stands for a name.
std::string regexpFromGlob(std::string text) {
    constexpr std::string_view kMarker = "‹«TrV_AsTeRiSk»›";
    const std::string anyFolders = "/." + std::string(kMarker) + "/";
    const std::pair<std::string_view, std::string_view> replacements[] = {
        {".", "\\."},         {"{", "\\{"},   {"}", "\\}"},   {"[!", "[^"},
        {"/**/", anyFolders}, {"*", "[^/]+"}, {kMarker, "*"}, {"?", "."}};
    for (const auto& [from, to] : replacements) replaceAll(text, from, to);
    return text;
}

/// Where an expression is only looked for, one character of an asterisk at either end finds what
/// many of them find; the engine is spared the backtracking, 3 to 5 times as long (measured).
std::u16string_view withoutRepetitionAtEnd(std::u16string_view expression) {
    const bool quotes = expression.find(u"\\Q") != expression.npos;
    if (expression.ends_with(u"[^/]+") && !quotes) expression.remove_suffix(1);
    return expression;
}
std::u16string withoutRepetitionAtStart(std::u16string_view expression) {
    constexpr std::u16string_view kAsterisk = u"[^/]+";
    const bool plain = expression.starts_with(kAsterisk) && !expression.starts_with(u"[^/]++");
    if (!plain) return std::u16string(expression);
    return u"[^/]" + std::u16string(expression.substr(kAsterisk.size()));
}

}  // namespace

MatchingRule::MatchingRule(const nlohmann::json& dictionary)
    : originalPattern(dictionary::text(dictionary, "pattern")),
      originalPatternType(dictionary::byte(dictionary, "patternType", kPatternExact)),
      fileType(dictionary::byte(dictionary, "fsItemType", 7)),
      original_(dictionary::original(dictionary)) {}

nlohmann::json MatchingRule::dictionaryRepresentation() const {
    nlohmann::json out = dictionary::copyOf(original_);
    out["pattern"] = originalPattern.value_or("");
    out["patternType"] = originalPatternType;
    out["fsItemType"] = fileType;
    return out;
}

void MatchingRule::preprocess() {
    pattern.reset();
    regexp.reset();
    patternSlashLocation = kNotFound;
    patternType = kPatternExact;
    if (!originalPattern) return;
    const std::string text = textToPath(*originalPattern);
    switch (originalPatternType) {
        case kPatternExact:
            setPattern(ruleText(text));
            break;
        case kPatternGlob:
            prepareGlob(text);
            break;
        case kPatternRegexp:
            patternType = kPatternRegexp;
            // Kept: such a rule always looks at the whole relative path.
            patternSlashLocation = 0;
            compile(ruleText(text));
            break;
        default:
            logError("Unknown exclusion type: %d", originalPatternType);
    }
}

void MatchingRule::prepareGlob(const std::string& text) {
    if (text == "*") {
        patternType = kPatternAnything;
        return;
    }
    const bool single = std::count(text.begin(), text.end(), '*') == 1 &&
                        text.find_first_of("[]?") == std::string::npos;
    if (single && text.front() == '*') {
        patternType = kPatternSuffix;
        setPattern(ruleText(text.substr(1)));
    } else if (single && text.back() == '*') {
        patternType = kPatternPrefix;
        setPattern(ruleText(text.substr(0, text.size() - 1)));
    } else {
        patternType = kPatternRegexp;
        // Kept: an asterisk becomes an expression with a slash in it, so that such a rule looks at
        // the whole relative path.
        setPattern(ruleText(regexpFromGlob(text)));
        compile(withoutRepetitionAtStart(withoutRepetitionAtEnd(*pattern)));
    }
}

void MatchingRule::setPattern(std::u16string text) {
    const size_t slash = text.find(u'/');
    patternSlashLocation = slash == std::u16string::npos ? kNotFound : static_cast<int64_t>(slash);
    pattern = std::move(text);
}

void MatchingRule::compile(std::u16string_view expression) {
    UErrorCode status = U_ZERO_ERROR;
    RegexPointer compiled(uregex_open(expression.data(), static_cast<int32_t>(expression.size()),
                                      UREGEX_CASE_INSENSITIVE, nullptr, &status));
    if (U_SUCCESS(status)) regexp = std::move(compiled);
}

MatchingRules matchingRules(std::span<const nlohmann::json> stored, uint8_t type) {
    MatchingRules rules;
    for (const nlohmann::json& entry : stored) {
        if (!entry.is_object()) continue;
        MatchingRule& rule = rules.emplace_back(entry);
        rule.type = type;
        rule.preprocess();
    }
    return rules;
}
