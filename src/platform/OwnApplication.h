#pragma once
#include <cstdint>

/// Who is told what happens to the program as a whole. Main thread.
class OwnApplicationDelegate {
  public:
    virtual ~OwnApplicationDelegate() = default;
    /// The keyboard went to another program.
    virtual void applicationWillResignActive() = 0;
    virtual void applicationDidHide() = 0;
    /// Screens came, went, or changed their size or order.
    virtual void applicationDidChangeScreenParameters() = 0;
};

/// The program as the desktop sees it.
/// Owner:   main. Threads: main.
class OwnApplication {
  public:
    virtual ~OwnApplication() = default;
    virtual void setDelegate(OwnApplicationDelegate* delegate) = 0;
    /// One of our windows has the keyboard, or has asked for it within the last second.
    virtual bool isActive() const = 0;
    virtual void activateIgnoringOtherApps() = 0;
    /// All windows away; the delegate is told on a later turn of the main queue.
    virtual void hide() = 0;
    virtual void unhide() = 0;
    /// Ends the program in an orderly way, after this turn of the main queue.
    virtual void terminate() = 0;
    /// Modifier keys that are down now, as in screen/KeyEvent.h.
    virtual uint64_t modifierFlags() const = 0;
    virtual void beep() = 0;
};
