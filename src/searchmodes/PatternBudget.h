#pragma once
#include <cstdint>
#include <string_view>

/// How long compiling all regular expressions of one search text may take together. A compilation
/// cannot be ended, and a few characters can ask for much: without regard to case each class of a
/// whole alphabet costs milliseconds.
/// Owner:   who compiles the terms of one text, in their order.
/// Threads: one at a time.
/// Units:   microseconds, roughly those of a slow machine.
class PatternBudget {
  public:
    /// Whether the pattern may be compiled; then its cost is taken off.
    [[nodiscard]] bool allows(std::u16string_view pattern);

  private:
    int64_t left_ = 25'000;
};
