#pragma once
#include <memory>

#include "platform/Frontmost.h"

/// Who has the keyboard, asked of the window manager (EWMH, _NET_ACTIVE_WINDOW). Under other
/// platforms than X11 every call does nothing: there the focus goes back by itself.
/// Owner:   main, after QApplication is made. Threads: main. Each call waits for the X server once
///          or twice.
/// Fails:   silently.
class LinuxFrontmost : public Frontmost {
  public:
    LinuxFrontmost();
    ~LinuxFrontmost() override;

    void save() override;
    void activatePrevious() override;
    /// In front and with the keyboard, without the window manager's doubts about who asks.
    void activateOwnWindow(unsigned long window);
    /// Whether somebody composes the screen, so that a window may be translucent. Without X11: yes.
    bool composited() const;

  private:
    class Server;
    std::unique_ptr<Server> server_;  // null without X11
    unsigned long previous_ = 0;
    unsigned long own_ = 0;
};
