#pragma once
#include <memory>

#include "platform/HotKeys.h"

/// The hot key, grabbed from the X server whatever lock keys are on, and again whenever the
/// keyboard's layout changes. What another program holds is found out, whichever way it holds it.
/// Owner:   main, after QApplication is made. Threads: main. Registering waits for the X server.
/// Fails:   with a text: another program has the key, the keyboard has no such key, or the desktop
///          lets no program have keys of its own (Wayland).
class LinuxHotKeys : public HotKeys {
  public:
    LinuxHotKeys();
    ~LinuxHotKeys() override;
    Result<void> registerShortcut(const HotKey& hotKey, std::function<void()> action) override;
    void unregisterShortcut() override;

  private:
    class Grabber;
    std::unique_ptr<Grabber> grabber_;  // null without X11
};
