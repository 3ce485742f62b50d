#include "index/exclusionStatus.h"

#include <unicode/ustring.h>

#include <algorithm>

#include "util/Unicode.h"
#include "util/log.h"

namespace {

bool equalIgnoringCase(std::u16string_view a, std::u16string_view b) {
    if (a.empty() || b.empty()) return a.empty() && b.empty();  // ICU refuses a null pointer
    UErrorCode status = U_ZERO_ERROR;
    return u_strCaseCompare(a.data(), static_cast<int32_t>(a.size()), b.data(),
                            static_cast<int32_t>(b.size()), 0, &status) == 0;
}

bool find(const URegularExpression* compiled, std::u16string_view text) {
    UErrorCode status = U_ZERO_ERROR;
    const RegexPointer regexp(uregex_clone(compiled, &status));
    if (U_FAILURE(status)) {
        logError("Failed to clone regex: %s", u_errorName(status));
        return false;
    }
    // A view may be empty without pointing anywhere, which ICU refuses.
    uregex_setText(regexp.get(), text.empty() ? u"" : text.data(),
                   static_cast<int32_t>(text.size()), &status);
    if (U_FAILURE(status)) {
        logError("Failed to set text to regex: %s", u_errorName(status));
        return false;
    }
    const bool found = uregex_find(regexp.get(), 0, &status) != 0;
    if (U_FAILURE(status)) {
        logError("Failed to find regex: %s", u_errorName(status));
        return false;
    }
    return found;
}

bool canMatch(const MatchingRule& rule) {
    if (!rule.originalPattern) return false;
    if (rule.patternType == kPatternAnything) return true;
    return rule.patternType == kPatternRegexp ? rule.regexp != nullptr : rule.pattern.has_value();
}

bool matches(const MatchingRule& rule, std::u16string_view path, std::u16string_view name) {
    const int64_t slash = rule.patternSlashLocation;
    if (rule.patternType == kPatternAnything) return true;
    if (rule.patternType == kPatternRegexp)
        return find(rule.regexp.get(), slash == kNotFound ? name : path);
    const std::u16string_view pattern = *rule.pattern;
    if (pattern.empty()) return false;
    switch (rule.patternType) {
        case kPatternExact:
            if (slash == 0) return equalIgnoringCase(path, pattern);
            if (slash == kNotFound) return equalIgnoringCase(name, pattern);
            return stringHasSuffix(path, pattern);  // Kept: here case counts
        case kPatternPrefix:
            if (slash == kNotFound) return stringHasPrefix(name, pattern);
            // Kept: a prefix with a slash elsewhere than in front never applies.
            return slash == 0 && stringHasPrefix(path, pattern);
        case kPatternSuffix:
            return stringHasSuffix(slash == kNotFound ? name : path, pattern);
        default:
            return false;
    }
}

}  // namespace

exclusion_status_t exclusionStatus(std::u16string_view path, size_t lastPathComponentOffset,
                                   uint8_t fileTypeMask, std::span<const MatchingRule> patterns) {
    constexpr uint8_t kKinds = 7;
    const std::u16string_view name =
        path == u"/" ? u"" : path.substr(std::min(lastPathComponentOffset, path.size()));
    for (const MatchingRule& rule : patterns) {
        if (!canMatch(rule)) continue;
        logIf(processFlags.debugRules, Info,
              "        ruleType: %d, fileTypeMask: %d; patternType: %d; pattern: %s; "
              "patternSlashLocation: %lld",
              rule.type, rule.fileType, rule.patternType,
              toUtf8(rule.pattern.value_or(u"(null)")).c_str(),
              static_cast<long long>(rule.patternSlashLocation));
        if ((fileTypeMask & rule.fileType & kKinds) == 0) {
            logIf(processFlags.debugRules, Info,
                  "            File type of pattern does not apply; Skipping Rule.");
            continue;
        }
        if (matches(rule, path, name))
            return rule.type == kRuleExclude ? kStatusExcluded : kStatusIncluded;
    }
    return kStatusNoRule;
}
