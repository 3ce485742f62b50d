#pragma once
#include <functional>

#include "util/Observable.h"

/// How the desktop wants programs to look.
/// Owner:   main. Threads: main.
class Appearance {
  public:
    virtual ~Appearance() = default;
    virtual bool isDark() const = 0;
    virtual bool wantsHighContrast() const = 0;
    virtual bool wantsLessMotion() const = 0;
    /// Of texts and what holds them; 1 is normal.
    virtual double textScale() const = 0;
    /// Called on the main thread after each change of what these or the fonts say.
    [[nodiscard]] virtual Subscription observe(std::function<void()> block) = 0;
};
