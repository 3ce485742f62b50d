#pragma once
#include "screen/Geometry.h"

/// Who is told what happens to the window. Main thread.
class WindowViewDelegate {
  public:
    virtual ~WindowViewDelegate() = default;
    virtual void windowDidBecomeKey() = 0;
    virtual void windowDidResignKey() = 0;
    /// The desktop asks for it to be closed.
    virtual void windowWillClose() = 0;
};

/// The one search window: borderless, above others. Main thread.
class WindowView {
  public:
    virtual ~WindowView() = default;
    virtual void setDelegate(WindowViewDelegate* delegate) = 0;
    /// In front, with the keyboard.
    virtual void show() = 0;
    virtual void hide() = 0;
    virtual bool isVisible() const = 0;
    /// Has the keyboard, or has asked for it within the last second.
    virtual bool isActive() const = 0;
    virtual Rect frame() const = 0;
    virtual void setFrame(Rect frame, bool animated) = 0;
    /// Of the screen that the window is on, and what panels leave of it.
    virtual Rect screenFrame() const = 0;
    virtual Rect visibleScreenFrame() const = 0;
};
