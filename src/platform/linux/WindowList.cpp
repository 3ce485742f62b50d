#include "platform/linux/WindowList.h"

#include <unistd.h>

#include <algorithm>
#include <cstring>

namespace {

/// Source indication of a client message: the user asked by a pager or the like. Window managers
/// obey it without focus-stealing prevention.
constexpr uint32_t kSourceUser = 2;
constexpr qint64 kFresh = 1000;         // milliseconds
constexpr uint32_t kMostWords = 16384;  // of a property that is read

}  // namespace

WindowList::WindowList(xcb_connection_t* x)
    : x_(x),
      root_(xcb_setup_roots_iterator(xcb_get_setup(x)).data->root),
      manager_(x11::atom(x, "_NET_SUPPORTING_WM_CHECK")),
      activeWindow_(x11::atom(x, "_NET_ACTIVE_WINDOW")),
      stacking_(x11::atom(x, "_NET_CLIENT_LIST_STACKING")),
      pid_(x11::atom(x, "_NET_WM_PID")),
      gtkId_(x11::atom(x, "_GTK_APPLICATION_ID")),
      compositor_(x11::atom(x, "_NET_WM_CM_S0")) {
    qApp->installNativeEventFilter(this);
}

bool WindowList::nativeEventFilter(const QByteArray& type, void* message, qintptr*) {
    if (type != "xcb_generic_event_t") return false;
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    const int kind = event->response_type & 0x7f;
    // Key and button events have their time at the same place.
    if (kind >= XCB_KEY_PRESS && kind <= XCB_BUTTON_RELEASE) {
        time_ = reinterpret_cast<const xcb_key_press_event_t*>(event)->time;
        sinceTime_.start();
    }
    return false;
}

xcb_timestamp_t WindowList::userTime() const {
    // A window manager that knows of a later key, in another window, would take us for a thief.
    return sinceTime_.isValid() && sinceTime_.elapsed() < kFresh ? time_ : XCB_CURRENT_TIME;
}

std::string WindowList::property(xcb_window_t window, xcb_atom_t name) const {
    const auto cookie =
        xcb_get_property(x_, 0, window, name, XCB_GET_PROPERTY_TYPE_ANY, 0, kMostWords);
    const x11::Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(x_, cookie, nullptr),
                                                     &std::free);
    if (!reply) return {};
    return {static_cast<const char*>(xcb_get_property_value(reply.get())),
            size_t(xcb_get_property_value_length(reply.get()))};
}

uint32_t WindowList::cardinal(xcb_window_t window, xcb_atom_t name) const {
    const std::string bytes = property(window, name);
    uint32_t value = 0;
    if (bytes.size() >= sizeof value) std::memcpy(&value, bytes.data(), sizeof value);
    return value;
}

bool WindowList::isManaged() const {
    const xcb_window_t manager = cardinal(root_, manager_);
    return manager != XCB_WINDOW_NONE && exists(manager);
}

bool WindowList::exists(xcb_window_t window) const {
    const x11::Reply<xcb_get_window_attributes_reply_t> reply(
        xcb_get_window_attributes_reply(x_, xcb_get_window_attributes(x_, window), nullptr),
        &std::free);
    return reply != nullptr;
}

xcb_window_t WindowList::activeWindow() const {
    if (isManaged()) return cardinal(root_, activeWindow_);
    const x11::Reply<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(x_, xcb_get_input_focus(x_), nullptr), &std::free);
    const bool isWindow = reply && reply->focus > XCB_INPUT_FOCUS_POINTER_ROOT;
    return isWindow && reply->focus != root_ ? reply->focus : xcb_window_t(XCB_WINDOW_NONE);
}

bool WindowList::isOwn(xcb_window_t window) const {
    return cardinal(window, pid_) == uint32_t(getpid());
}

applicationId::WindowFacts WindowList::factsOf(xcb_window_t window) const {
    // Two texts, each with an end of its own.
    const std::string names = property(window, XCB_ATOM_WM_CLASS);
    const std::string instance = names.c_str();
    const size_t second = std::min(instance.size() + 1, names.size());
    return {.gtkId = property(window, gtkId_),
            .instance = instance,
            .className = names.substr(second).c_str(),
            .pid = cardinal(window, pid_)};
}

std::vector<xcb_window_t> WindowList::fromTheTop() const {
    const std::string bytes = property(root_, stacking_);
    std::vector<xcb_window_t> windows(bytes.size() / sizeof(xcb_window_t));
    std::memcpy(windows.data(), bytes.data(), windows.size() * sizeof(xcb_window_t));
    std::reverse(windows.begin(), windows.end());
    return windows;
}

void WindowList::activate(xcb_window_t window, xcb_window_t current) {
    if (!isManaged()) {
        xcb_set_input_focus(x_, XCB_INPUT_FOCUS_PARENT, window, userTime());
        xcb_flush(x_);
        return;
    }
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = activeWindow_;
    event.data.data32[0] = kSourceUser;
    event.data.data32[1] = userTime();
    event.data.data32[2] = current;
    xcb_send_event(x_, 0, root_,
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&event));
    xcb_flush(x_);
}

bool WindowList::composited() const {
    const x11::Reply<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(x_, xcb_get_selection_owner(x_, compositor_), nullptr),
        &std::free);
    return reply && reply->owner != XCB_WINDOW_NONE;
}
