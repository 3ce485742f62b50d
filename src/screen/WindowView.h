#pragma once
#include <functional>

#include "screen/Geometry.h"
#include "screen/ModeLook.h"

/// Who is told what happens to the window. Main thread.
class WindowViewDelegate {
  public:
    virtual ~WindowViewDelegate() = default;
    virtual void windowDidBecomeKey() = 0;
    /// By the user's or the program's doing.
    virtual void windowDidMove() = 0;
    virtual void windowDidResize() = 0;
    /// The desktop, or its close button, asks for it to be closed.
    virtual void windowWillClose() = 0;
    virtual void stickyButtonClicked() = 0;
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
    /// The user may change its width.
    virtual void setResizable(bool resizable) = 0;
    virtual void setLook(const ModeLook& look) = 0;
    /// What its sticky button shows: it stays when another program gets the keyboard.
    virtual void setSticky(bool sticky) = 0;
    virtual Rect frame() const = 0;
    /// Animated: in 0.1 seconds, then ended is called; else it is called at once.
    virtual void setFrame(Rect frame, bool animated, std::function<void()> ended = {}) = 0;
    /// Of the screen that the window is on, and what panels leave of it.
    virtual Rect screenFrame() const = 0;
    virtual Rect visibleScreenFrame() const = 0;
    /// What panels leave of the screen on which most of this place is, or which is nearest.
    virtual Rect visibleScreenFrameFor(Rect place) const = 0;
};
