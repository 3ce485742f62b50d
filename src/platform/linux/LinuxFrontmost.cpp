#include "platform/linux/LinuxFrontmost.h"

#include <QtGui/qguiapplication_platform.h>
#include <unistd.h>
#include <QAbstractNativeEventFilter>
#include <QGuiApplication>

#include <cstring>

#include "platform/linux/X11.h"

namespace {

/// Source indication of a client message: the user asked by a pager or the like. Window managers
/// obey it without focus-stealing prevention.
constexpr uint32_t kSourceUser = 2;

}  // namespace

/// The connection that Qt has, and the time of the user's last key or click on it.
class LinuxFrontmost::Server : public QAbstractNativeEventFilter {
  public:
    explicit Server(xcb_connection_t* connection) : connection_(connection) {
        root_ = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
        activeWindow_ = x11::atom(connection, "_NET_ACTIVE_WINDOW");
        pid_ = x11::atom(connection, "_NET_WM_PID");
        compositor_ = x11::atom(connection, "_NET_WM_CM_S0");
        qApp->installNativeEventFilter(this);
    }

    bool nativeEventFilter(const QByteArray& type, void* message, qintptr*) override {
        if (type != "xcb_generic_event_t") return false;
        const auto* event = static_cast<const xcb_generic_event_t*>(message);
        const int kind = event->response_type & 0x7f;
        // Key and button events have their time at the same place.
        if (kind >= XCB_KEY_PRESS && kind <= XCB_BUTTON_RELEASE)
            time_ = reinterpret_cast<const xcb_key_press_event_t*>(event)->time;
        return false;
    }

    xcb_window_t activeWindow() const { return cardinal(root_, activeWindow_); }
    bool isOwn(xcb_window_t window) const { return cardinal(window, pid_) == uint32_t(getpid()); }

    bool composited() const {
        const x11::Reply<xcb_get_selection_owner_reply_t> reply(
            xcb_get_selection_owner_reply(
                connection_, xcb_get_selection_owner(connection_, compositor_), nullptr),
            &std::free);
        return reply && reply->owner != XCB_WINDOW_NONE;
    }

    void activate(xcb_window_t window, xcb_window_t current) {
        xcb_client_message_event_t event{};
        event.response_type = XCB_CLIENT_MESSAGE;
        event.format = 32;
        event.window = window;
        event.type = activeWindow_;
        event.data.data32[0] = kSourceUser;
        event.data.data32[1] = time_;
        event.data.data32[2] = current;
        xcb_send_event(connection_, 0, root_,
                       XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                       reinterpret_cast<const char*>(&event));
        xcb_flush(connection_);
    }

  private:
    /// The first 32 bits of a property; 0 where there are none.
    uint32_t cardinal(xcb_window_t window, xcb_atom_t property) const {
        const x11::Reply<xcb_get_property_reply_t> reply(
            xcb_get_property_reply(
                connection_,
                xcb_get_property(connection_, 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, 1),
                nullptr),
            &std::free);
        uint32_t value = 0;
        if (reply && reply->format == 32 && xcb_get_property_value_length(reply.get()) >= 4)
            std::memcpy(&value, xcb_get_property_value(reply.get()), sizeof value);
        return value;
    }

    xcb_connection_t* const connection_;
    xcb_window_t root_ = 0;
    xcb_atom_t activeWindow_ = 0, pid_ = 0, compositor_ = 0;
    xcb_timestamp_t time_ = XCB_CURRENT_TIME;
};

LinuxFrontmost::LinuxFrontmost() {
    if (xcb_connection_t* connection = x11::connection())
        server_ = std::make_unique<Server>(connection);
}

LinuxFrontmost::~LinuxFrontmost() = default;

void LinuxFrontmost::save() {
    if (!server_) return;
    const xcb_window_t active = server_->activeWindow();
    // Directly after our window went, the window manager may still name it.
    if (active == XCB_WINDOW_NONE || !server_->isOwn(active)) previous_ = active;
}

void LinuxFrontmost::activatePrevious() {
    if (!server_ || !previous_) return;
    server_->activate(xcb_window_t(previous_), xcb_window_t(own_));
}

void LinuxFrontmost::activateOwnWindow(unsigned long window) {
    own_ = window;
    if (server_) server_->activate(xcb_window_t(window), xcb_window_t(previous_));
}

bool LinuxFrontmost::composited() const {
    return !server_ || server_->composited();
}
