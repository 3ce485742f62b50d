#pragma once
#include <optional>
#include <string>

/// A program that runs, by its desktop file id and its file.
struct RunningApplication {
    std::string bundleIdentifier;
    std::string bundlePath;
    friend bool operator==(const RunningApplication&, const RunningApplication&) = default;
};

/// The other programs on the desktop: who has the keyboard, and giving it to them.
/// Owner:   main. Threads: main.
/// Fails:   silently: where the desktop does not tell, nobody is in front and nothing happens.
class Frontmost {
  public:
    virtual ~Frontmost() = default;
    /// Who is in front now; a window of our own does not count. Its window is remembered.
    virtual std::optional<RunningApplication> frontmostApplication() = 0;
    /// The first running application with that identifier comes to the front: with the remembered
    /// window if it is its own. False where there is none.
    virtual bool activateRunningApplication(const std::string& bundleIdentifier) = 0;
};
