#include "platform/linux/WindowHints.h"

#include <xcb/shape.h>

#include <array>
#include <string_view>

#include "platform/linux/X11.h"

namespace {

template <size_t N>
void setProperty(xcb_connection_t* x, xcb_window_t window, std::string_view property,
                 xcb_atom_t type, const std::array<uint32_t, N>& values) {
    xcb_change_property(x, XCB_PROP_MODE_REPLACE, window, x11::atom(x, property), type, 32, N,
                        values.data());
}

}  // namespace

void WindowHints::prepareWindow(uintptr_t window, const QMargins& shadow, const QColor& ground) {
    xcb_connection_t* const x = x11::connection();
    if (!x) return;
    const auto id = xcb_window_t(window);
    // The window manager takes the states away when the window goes, so they are set each time; Qt
    // adds its own to them.
    setProperty(x, id, "_NET_WM_STATE", XCB_ATOM_ATOM,
                std::array<uint32_t, 2>{x11::atom(x, "_NET_WM_STATE_SKIP_TASKBAR"),
                                        x11::atom(x, "_NET_WM_STATE_SKIP_PAGER")});
    setProperty(x, id, "_GTK_FRAME_EXTENTS", XCB_ATOM_CARDINAL,
                std::array<uint32_t, 4>{uint32_t(shadow.left()), uint32_t(shadow.right()),
                                        uint32_t(shadow.top()), uint32_t(shadow.bottom())});
    // The visual has 8 bits a channel and alpha on top, as QRgb.
    const uint32_t pixel = qPremultiply(ground.rgba());
    xcb_change_window_attributes(x, id, XCB_CW_BACK_PIXEL, &pixel);
    xcb_flush(x);
}

void WindowHints::takeClicksIn(uintptr_t window, const QRect& part) {
    xcb_connection_t* const x = x11::connection();
    if (!x) return;
    const auto* shape = xcb_get_extension_data(x, &xcb_shape_id);
    if (!shape || !shape->present) return;
    const auto id = xcb_window_t(window);
    if (part.isEmpty()) {
        xcb_shape_mask(x, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, id, 0, 0, XCB_NONE);
    } else {
        const xcb_rectangle_t rectangle{int16_t(part.x()), int16_t(part.y()),
                                        uint16_t(part.width()), uint16_t(part.height())};
        xcb_shape_rectangles(x, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, XCB_CLIP_ORDERING_UNSORTED,
                             id, 0, 0, 1, &rectangle);
    }
    xcb_flush(x);
}

uint32_t WindowHints::keySymbol(uint32_t scanCode, unsigned group) {
    xcb_connection_t* const x = x11::connection();
    if (!x || scanCode > UINT8_MAX || scanCode < xcb_get_setup(x)->min_keycode) return 0;
    const x11::Reply<xcb_get_keyboard_mapping_reply_t> reply(
        xcb_get_keyboard_mapping_reply(x, xcb_get_keyboard_mapping(x, xcb_keycode_t(scanCode), 1),
                                       nullptr),
        &std::free);
    // Two symbols a group, the first one without Shift.
    const unsigned at = group * 2;
    if (!reply || at >= reply->keysyms_per_keycode) return 0;
    return xcb_get_keyboard_mapping_keysyms(reply.get())[at];
}

KeySymbols WindowHints::keySymbols() {
    return x11::connection() ? KeySymbols(keySymbol) : KeySymbols();
}
