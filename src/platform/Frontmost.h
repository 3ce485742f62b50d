#pragma once

/// Who had the keyboard before our window came, so that it can have it back.
/// Owner:   main. Threads: main.
/// Fails:   silently: where the desktop does not tell, nothing is remembered and nothing happens.
class Frontmost {
  public:
    virtual ~Frontmost() = default;
    /// Remembers who is in front now; a window of our own does not count.
    virtual void save() = 0;
    /// Gives the keyboard back to the one that was remembered.
    virtual void activatePrevious() = 0;
};
