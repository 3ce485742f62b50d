#pragma once
#include <optional>
#include <string>

class Frontmost;

/// The application that was in front when the window was called up, and gets the keyboard back.
/// Owner:   AppDelegate. Threads: main.
class FrontmostApplication {
  public:
    explicit FrontmostApplication(Frontmost& frontmost) : frontmost_(frontmost) {}

    /// Before we come to the front ourselves.
    void saveFrontmostApplicationInformation();
    void activatePreviouslyRunningApplication();
    void activateRunningApplicationWithBundleIdentifier(const std::string& identifier);
    const std::optional<std::string>& frontmostApplicationBundleId() const { return bundleId_; }
    const std::optional<std::string>& frontmostApplicationBundlePath() const { return bundlePath_; }

  private:
    Frontmost& frontmost_;
    std::optional<std::string> bundleId_, bundlePath_;
};
