#pragma once
#include <cstdint>
#include <memory>

#include "platform/Frontmost.h"

class WindowList;

/// Who has the keyboard, asked of the window manager. Under other platforms than X11 nobody is in
/// front and nothing happens: there the focus goes back by itself.
/// Owner:   main, after QApplication is made. Threads: main. Calls wait for the X server, and look
///          at the desktop files of the window's program.
/// Fails:   silently.
class LinuxFrontmost : public Frontmost {
  public:
    LinuxFrontmost();
    ~LinuxFrontmost() override;

    std::optional<RunningApplication> frontmostApplication() override;
    bool activateRunningApplication(const std::string& bundleIdentifier) override;
    /// In front and with the keyboard, without the window manager's doubts about who asks.
    void activateOwnWindow(uintptr_t window);
    /// Whether somebody composes the screen, so that a window may be translucent. Without X11: yes.
    bool composited() const;

  private:
    const std::unique_ptr<WindowList> windows_;  // null without X11
    uint32_t previous_ = 0;                      // the window that was in front
    RunningApplication previousApplication_;
    uint32_t own_ = 0;
};
