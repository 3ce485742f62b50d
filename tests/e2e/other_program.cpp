// Another program on the desktop, for the tests of the whole.
//   other_program window    shows a window, prints "focus 1", "focus 0" and "typed C" as they come
//   other_program hold      holds the hot key Ctrl+Alt+Space
//   other_program is-held   ends with 0 if somebody holds it
//   other_program shown X Y RED GREEN BLUE
//       waits for the hot key's space bar, and for the screen to have that colour there; prints the
//       milliseconds between
#include <unistd.h>
#include <xcb/xcb.h>
#include <xcb/xinput.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

constexpr xcb_keycode_t kSpaceKey = 65;

struct Screen {
    xcb_connection_t* x = xcb_connect(nullptr, nullptr);
    xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(x)).data->root;
};

uint32_t symbolOf(xcb_connection_t* x, xcb_keycode_t key) {
    auto* map = xcb_get_keyboard_mapping_reply(x, xcb_get_keyboard_mapping(x, key, 1), nullptr);
    const uint32_t symbol = map ? xcb_get_keyboard_mapping_keysyms(map)[0] : 0;
    std::free(map);
    return symbol;
}

int showWindow(const Screen& screen) {
    xcb_connection_t* const x = screen.x;
    const xcb_window_t window = xcb_generate_id(x);
    const uint32_t events = XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_FOCUS_CHANGE;
    const uint32_t values[] = {0x00305070, events};
    xcb_create_window(x, XCB_COPY_FROM_PARENT, window, screen.root, 20, 560, 300, 120, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK, values);
    const char names[] = "other\0Other";
    xcb_change_property(x, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
                        sizeof names, names);
    xcb_map_window(x, window);
    xcb_flush(x);
    std::printf("window %u\n", window);
    while (xcb_generic_event_t* event = xcb_wait_for_event(x)) {
        const int kind = event->response_type & 0x7f;
        const auto* focus = reinterpret_cast<xcb_focus_in_event_t*>(event);
        // A key that somebody grabs takes the focus for the time that it is down.
        const bool isLasting =
            focus->mode == XCB_NOTIFY_MODE_NORMAL || focus->mode == XCB_NOTIFY_MODE_WHILE_GRABBED;
        if (kind == XCB_FOCUS_IN && isLasting) std::puts("focus 1");
        if (kind == XCB_FOCUS_OUT && isLasting) std::puts("focus 0");
        if (kind == XCB_KEY_PRESS) {
            const auto* key = reinterpret_cast<xcb_key_press_event_t*>(event);
            const uint32_t symbol = symbolOf(x, key->detail);
            if (symbol > ' ' && symbol < 127) std::printf("typed %c\n", char(symbol));
        }
        std::free(event);
    }
    return 0;
}

bool grab(const Screen& screen) {
    const uint16_t modifiers = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1;
    auto* error = xcb_request_check(
        screen.x, xcb_grab_key_checked(screen.x, 0, screen.root, modifiers, kSpaceKey,
                                       XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    const bool isOurs = !error;
    std::free(error);
    return isOurs;
}

/// Nobody may try to have the key in the moment in which it is ours.
bool isHeld(const Screen& screen) {
    xcb_grab_server(screen.x);
    const bool isFree = grab(screen);
    if (isFree) xcb_ungrab_key(screen.x, kSpaceKey, screen.root, XCB_MOD_MASK_ANY);
    xcb_ungrab_server(screen.x);
    std::free(xcb_get_input_focus_reply(screen.x, xcb_get_input_focus(screen.x), nullptr));
    return !isFree;
}

double millisecondsSince(std::chrono::steady_clock::time_point begin) {
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin)
        .count();
}

/// Of any program, whoever has grabbed it.
void waitForSpaceBar(const Screen& screen) {
    std::free(xcb_input_xi_query_version_reply(screen.x, xcb_input_xi_query_version(screen.x, 2, 2),
                                               nullptr));
    const struct {
        xcb_input_event_mask_t head;
        uint32_t mask;
    } events = {{XCB_INPUT_DEVICE_ALL_MASTER, 1}, XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS};
    xcb_input_xi_select_events(screen.x, screen.root, 1, &events.head);
    xcb_flush(screen.x);
    std::puts("ready");
    while (xcb_generic_event_t* event = xcb_wait_for_event(screen.x)) {
        const auto* key = reinterpret_cast<xcb_input_raw_key_press_event_t*>(event);
        const bool isSpace = (event->response_type & 0x7f) == XCB_GE_GENERIC &&
                             key->event_type == XCB_INPUT_RAW_KEY_PRESS && key->detail == kSpaceKey;
        std::free(event);
        if (isSpace) return;
    }
}

int waitForColour(const Screen& screen, const char* const* arguments) {
    const auto number = [&](int i) { return std::atoi(arguments[i]); };
    waitForSpaceBar(screen);
    const auto begin = std::chrono::steady_clock::now();
    while (millisecondsSince(begin) < 10000) {
        auto* image =
            xcb_get_image_reply(screen.x,
                                xcb_get_image(screen.x, XCB_IMAGE_FORMAT_Z_PIXMAP, screen.root,
                                              int16_t(number(0)), int16_t(number(1)), 1, 1, ~0U),
                                nullptr);
        if (!image) return 1;
        const uint8_t* pixel = xcb_get_image_data(image);  // blue first
        int away = 0;
        for (int i = 0; i < 3; ++i) away += std::abs(pixel[2 - i] - number(2 + i));
        std::free(image);
        if (away <= 6) {
            std::printf("%.2f\n", millisecondsSince(begin));
            return 0;
        }
        usleep(500);
    }
    return 1;
}

}  // namespace

int main(int count, char** arguments) {
    const std::string what = count > 1 ? arguments[1] : "";
    const Screen screen;
    if (xcb_connection_has_error(screen.x)) return 2;
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    if (what == "window") return showWindow(screen);
    if (what == "is-held") return isHeld(screen) ? 0 : 1;
    if (what == "shown" && count == 7) return waitForColour(screen, arguments + 2);
    if (what != "hold" || !grab(screen)) return 2;
    std::puts("held");
    pause();
    return 0;
}
