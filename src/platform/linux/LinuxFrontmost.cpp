#include "platform/linux/LinuxFrontmost.h"

#include "platform/linux/WindowList.h"

namespace {

std::unique_ptr<WindowList> windowList() {
    xcb_connection_t* const x = x11::connection();
    return x ? std::make_unique<WindowList>(x) : nullptr;
}

RunningApplication applicationOf(const applicationId::WindowFacts& facts) {
    std::string id = applicationId::ofWindow(facts);
    std::string file = applicationId::fileOf(id, facts.pid);
    return {.bundleIdentifier = std::move(id), .bundlePath = std::move(file)};
}

}  // namespace

LinuxFrontmost::LinuxFrontmost() : windows_(windowList()) {}

LinuxFrontmost::~LinuxFrontmost() = default;

std::optional<RunningApplication> LinuxFrontmost::frontmostApplication() {
    if (!windows_) return std::nullopt;
    const xcb_window_t active = windows_->activeWindow();
    // Directly after our window went, the window manager may still name it; then the keyboard is on
    // its way back to where it came from.
    if (active == XCB_WINDOW_NONE || !windows_->isOwn(active)) {
        previous_ = active;
        previousApplication_ = active == XCB_WINDOW_NONE ? RunningApplication()
                                                         : applicationOf(windows_->factsOf(active));
    }
    if (previous_ == XCB_WINDOW_NONE) return std::nullopt;
    // A window that says nothing of itself still gets the keyboard back.
    if (previousApplication_.bundleIdentifier.empty())
        previousApplication_.bundleIdentifier = "window-" + std::to_string(previous_);
    return previousApplication_;
}

bool LinuxFrontmost::activateRunningApplication(const std::string& bundleIdentifier) {
    if (!windows_) return false;
    const bool isPrevious =
        previous_ != XCB_WINDOW_NONE && bundleIdentifier == previousApplication_.bundleIdentifier;
    if (isPrevious && windows_->exists(previous_)) {
        windows_->activate(previous_, own_);
        return true;
    }
    for (const xcb_window_t window : windows_->fromTheTop()) {
        if (windows_->isOwn(window)) continue;
        if (applicationId::ofWindow(windows_->factsOf(window)) != bundleIdentifier) continue;
        windows_->activate(window, own_);
        return true;
    }
    return false;
}

void LinuxFrontmost::activateOwnWindow(uintptr_t window) {
    own_ = xcb_window_t(window);
    if (windows_) windows_->activate(own_, previous_);
}

bool LinuxFrontmost::composited() const {
    return !windows_ || windows_->composited();
}
