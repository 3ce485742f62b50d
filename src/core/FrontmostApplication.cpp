#include "core/FrontmostApplication.h"

#include "platform/Frontmost.h"

void FrontmostApplication::saveFrontmostApplicationInformation() {
    const auto application = frontmost_.frontmostApplication();
    bundleId_.reset();
    bundlePath_.reset();
    if (!application) return;
    bundleId_ = application->bundleIdentifier;
    bundlePath_ = application->bundlePath;
}

void FrontmostApplication::activatePreviouslyRunningApplication() {
    if (bundleId_) activateRunningApplicationWithBundleIdentifier(*bundleId_);
}

void FrontmostApplication::activateRunningApplicationWithBundleIdentifier(
    const std::string& identifier) {
    (void)frontmost_.activateRunningApplication(identifier);
}
