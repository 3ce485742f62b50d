#pragma once
#include <chrono>
#include <cmath>
#include <condition_variable>
#include <ctime>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>

#include "searchmodes/RegexSearch.h"
#include "searchmodes/SearchTerms.h"
#include "util/Unicode.h"

/// What must hold of every regular expression and every name, for the tests and the fuzzer alike.

/// Sets a flag after a while, unless it ends before.
class StaleAfter {
  public:
    explicit StaleAfter(std::chrono::milliseconds time)
        : thread_([this, time] {
              std::unique_lock lock(mutex_);
              if (!changed_.wait_for(lock, time, [this] { return over_; })) stale = true;
          }) {}
    ~StaleAfter() {
        {
            const std::lock_guard lock(mutex_);
            over_ = true;
        }
        changed_.notify_all();
        thread_.join();
    }
    Relaxed<bool> stale{false};

  private:
    std::mutex mutex_;
    std::condition_variable changed_;
    bool over_ = false;
    std::thread thread_;
};

/// Whether ICU finds the pattern by itself; nothing where it cannot tell in time.
inline std::optional<bool> foundByMatcherAlone(std::u16string_view pattern,
                                               std::u16string_view text) {
    PatternBudget budget;
    const CompiledPattern compiled = compilePattern(pattern, budget);
    if (!compiled.regexp) return std::nullopt;
    UErrorCode status = U_ZERO_ERROR;
    uregex_setTimeLimit(compiled.regexp.get(), 50, &status);
    uregex_setText(compiled.regexp.get(), text.empty() ? u"" : text.data(),
                   static_cast<int32_t>(text.size()), &status);
    const bool found = uregex_find(compiled.regexp.get(), 0, &status) != 0;
    if (U_FAILURE(status)) return std::nullopt;
    return found;
}

/// Whether a plus sign before it makes it one term, which the matcher is asked about.
inline bool isOrdinaryPattern(std::u16string_view pattern) {
    const std::u16string term = u"+" + std::u16string(pattern);
    for (const char16_t* shortcut : {u"+.*", u"+^.*", u"+.*$", u"+^.*$", u"+^", u"+$"})
        if (term == shortcut) return false;
    return componentsSeparatedByUnescapedWhitespace(term) == std::vector{nfc(term)};
}

/// Empty where all is well.
inline std::string troubleWithPattern(const std::u16string& pattern, std::u16string_view text) {
    const std::clock_t begin = std::clock();  // others may hold the processor up
    StaleAfter after(std::chrono::milliseconds(20));
    RegexSearch positive(u"+" + pattern, &after.stale), negative(u"-" + pattern, &after.stale);
    if (std::clock() - begin > CLOCKS_PER_SEC) return "it does not compile in time";
    IndexSet indexes, none;
    double score = 0, nothing = 0;
    const bool match = positive.match(text, indexes, score);
    const bool refused = !negative.match(text, none, nothing);
    const bool stale = after.stale;
    if (std::clock() - begin > 2 * CLOCKS_PER_SEC) return "it does not end in time";
    if (!std::isfinite(score)) return "the score is no number";
    if (!indexes.empty() && indexes.items().back() >= text.size()) return "a position is outside";
    if (stale || !isOrdinaryPattern(pattern)) return "";
    const std::optional<bool> found = foundByMatcherAlone(pattern, text);
    if (found && match != *found) return "a term that must match differs from the matcher";
    if (found && refused != *found) return "a term that must not match differs from the matcher";
    return "";
}
