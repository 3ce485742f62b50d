#pragma once
#include <functional>

#include "util/Observable.h"

/// How the desktop wants programs to look.
/// Owner:   main. Threads: main.
class Appearance {
  public:
    virtual ~Appearance() = default;
    virtual bool isDark() const = 0;
    /// Called on the main thread after each change of what isDark or the fonts say.
    [[nodiscard]] virtual Subscription observe(std::function<void()> block) = 0;
};
