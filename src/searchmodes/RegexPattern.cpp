#include "searchmodes/RegexPattern.h"

#include <iterator>

namespace {

constexpr const char* kErrorTexts[] = {
    "An internal error (ICU bug) was detected.",
    "Syntax error in regexp pattern.",
    "RegexMatcher in invalid state for requested operation.",
    "Unrecognized backslash escape sequence in pattern.",
    "Incorrect Unicode property.",
    "Use of regexp feature that is not yet implemented.",
    "Incorrectly nested parentheses in regexp pattern.",
    "Decimal number is too large.",
    "Error in {min,max} interval.",
    "In {min,max}, max is less than min.",
    "Back-reference to a non-existent capture group.",
    "Invalid value for match mode flags.",
    "Look-Behind pattern matches must have a bounded maximum length.",
    "Regexps cannot have UnicodeSets containing strings.",
    nullptr,  // no longer in use
    "Missing closing bracket on a bracket expression.",
    "In a character range [x-y], x is greater than y.",
    "Regular expression backtrack stack overflow.",
    "Maximum allowed match time exceeded.",
    "Matching operation aborted by user callback function.",
    "Pattern exceeds limits on size or complexity.",
    "Invalid capture group name.",
};

bool isAsciiAlphanumeric(char16_t unit) {
    return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z') ||
           (unit >= u'0' && unit <= u'9');
}

char16_t lowerCasedAscii(char16_t unit) {
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit | 32) : unit;
}

/// Behind a backslash: a class of characters, or a place between two. Others change what follows.
bool isPlainClass(char16_t letter) {
    return std::u16string_view(u"dDwWsSbB").find(letter) != std::u16string_view::npos;
}

/// Where the set that begins at begin ends; npos where it is not a simple one.
size_t endOfSimpleSet(std::u16string_view pattern, size_t begin) {
    size_t at = begin + 1;
    if (at < pattern.size() && pattern[at] == u'^') at++;
    if (at == pattern.size() || pattern[at] == u']' || pattern[at] == u':') return pattern.npos;
    for (; at < pattern.size() && pattern[at] != u'['; at++) {
        if (pattern[at] == u']') return at;
        if (pattern[at] != u'\\') continue;
        if (++at == pattern.size()) break;
        if (isAsciiAlphanumeric(pattern[at]) && !isPlainClass(pattern[at])) break;
    }
    return pattern.npos;
}

/// The longest run of characters that stand for themselves, once each at least.
class LiteralRuns {
  public:
    void add(char16_t unit) { run_.push_back(static_cast<char>(lowerCasedAscii(unit))); }
    void dropLast() {
        if (!run_.empty()) run_.pop_back();
        end();
    }
    void end() {
        if (run_.size() > longest_.size()) longest_ = run_;
        run_.clear();
    }
    std::string longest() {
        end();
        return longest_;
    }

  private:
    std::string run_, longest_;
};

}  // namespace

CompiledPattern compilePattern(std::u16string_view text, PatternBudget& budget) {
    if (!budget.allows(text)) return {.regexp = nullptr, .error = U_REGEX_PATTERN_TOO_BIG};
    CompiledPattern compiled;
    compiled.regexp.reset(uregex_open(text.data(), static_cast<int32_t>(text.size()),
                                      UREGEX_CASE_INSENSITIVE, nullptr, &compiled.error));
    if (U_FAILURE(compiled.error)) compiled.regexp.reset();
    return compiled;
}

std::string regexErrorText(UErrorCode error) {
    const int index = error - U_REGEX_ERROR_START;
    if (index >= 0 && index < static_cast<int>(std::size(kErrorTexts)) && kErrorTexts[index])
        return kErrorTexts[index];
    return u_errorName(error);
}

std::string requiredLiteral(std::u16string_view pattern) {
    if (pattern.find_first_of(u"(|{") != std::u16string_view::npos) return {};
    LiteralRuns runs;
    for (size_t i = 0; i < pattern.size(); i++) {
        const char16_t unit = pattern[i];
        if (unit == u'*' || unit == u'?') {
            runs.dropLast();
        } else if (unit == u'[') {
            runs.end();
            i = endOfSimpleSet(pattern, i);
            if (i == pattern.npos) break;
        } else if (unit == u']' || unit == u'}') {
            break;
        } else if (unit == u'\\') {
            if (++i == pattern.size() || pattern[i] > u'~') break;
            if (isPlainClass(pattern[i]))
                runs.end();
            else if (isAsciiAlphanumeric(pattern[i]))
                break;
            else
                runs.add(pattern[i]);
        } else if (unit == u'.' || unit == u'^' || unit == u'$' || unit == u'+' || unit > u'~') {
            runs.end();
        } else {
            runs.add(unit);
        }
    }
    return runs.longest();
}

bool isAsciiWithout(std::string_view literal, std::u16string_view text) {
    unsigned all = 0;
    for (const char16_t unit : text) all |= unit;
    if (all > 127) return false;
    if (literal.size() > text.size()) return true;
    const char16_t first = static_cast<unsigned char>(literal.front());
    const char16_t other = first >= u'a' && first <= u'z' ? first - 32 : first;
    for (size_t i = 0; i <= text.size() - literal.size(); i++) {
        if (text[i] != first && text[i] != other) continue;
        size_t same = 1;
        while (same < literal.size() && lowerCasedAscii(text[i + same]) == literal[same]) same++;
        if (same == literal.size()) return false;
    }
    return true;
}
