#pragma once
#include <QAbstractNativeEventFilter>
#include <QElapsedTimer>
#include <string_view>
#include <vector>

#include "platform/linux/ApplicationId.h"
#include "platform/linux/X11.h"

/// The windows of the desktop as the window manager tells of them (EWMH), and the time of the
/// user's last key or click on ours.
/// Owner:   LinuxFrontmost. Threads: main. Each question waits for the X server.
/// Fails:   by 0 or nothing. Without a window manager the X server's own focus counts.
class WindowList : public QAbstractNativeEventFilter {
  public:
    explicit WindowList(xcb_connection_t* x);

    xcb_window_t activeWindow() const;
    bool isOwn(xcb_window_t window) const;
    bool exists(xcb_window_t window) const;
    applicationId::WindowFacts factsOf(xcb_window_t window) const;
    /// All windows that the manager looks after, the topmost first.
    std::vector<xcb_window_t> fromTheTop() const;
    /// In front and with the keyboard, without doubts about who asks. current: who has it now.
    void activate(xcb_window_t window, xcb_window_t current);
    bool composited() const;

    bool nativeEventFilter(const QByteArray& type, void* message, qintptr*) override;

  private:
    std::string property(xcb_window_t window, xcb_atom_t name) const;
    bool isManaged() const;
    uint32_t cardinal(xcb_window_t window, xcb_atom_t name) const;

    xcb_connection_t* const x_;
    xcb_window_t root_ = 0;
    xcb_atom_t manager_, activeWindow_, stacking_, pid_, gtkId_, compositor_;
    xcb_timestamp_t userTime() const;

    xcb_timestamp_t time_ = XCB_CURRENT_TIME;
    QElapsedTimer sinceTime_;
};
