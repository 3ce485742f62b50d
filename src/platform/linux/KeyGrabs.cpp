#include "platform/linux/KeyGrabs.h"

#include <xcb/xinput.h>

#include <algorithm>

#include "platform/linux/X11.h"

namespace {
constexpr xcb_input_device_id_t kAllMasters = 1;
}

KeyGrabs::KeyGrabs(xcb_connection_t* x)
    : x_(x), root_(xcb_setup_roots_iterator(xcb_get_setup(x)).data->root) {}

bool KeyGrabs::isFreeInSecondBook(xcb_keycode_t key, const std::vector<uint32_t>& modifiers) const {
    const uint32_t mask = XCB_INPUT_XI_EVENT_MASK_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_KEY_RELEASE;
    const auto count = uint16_t(modifiers.size());
    const auto cookie = xcb_input_xi_passive_grab_device(
        x_, XCB_CURRENT_TIME, root_, XCB_CURSOR_NONE, key, kAllMasters, count, 1,
        XCB_INPUT_GRAB_TYPE_KEYCODE, XCB_INPUT_GRAB_MODE_22_ASYNC, XCB_INPUT_GRAB_MODE_22_ASYNC,
        XCB_INPUT_GRAB_OWNER_NO_OWNER, &mask, modifiers.data());
    const x11::Reply<xcb_input_xi_passive_grab_device_reply_t> reply(
        xcb_input_xi_passive_grab_device_reply(x_, cookie, nullptr), &std::free);
    if (!reply) return true;  // a server without that book
    xcb_input_xi_passive_ungrab_device(x_, root_, key, kAllMasters, count,
                                       XCB_INPUT_GRAB_TYPE_KEYCODE, modifiers.data());
    // Named are those that could not be had.
    return xcb_input_xi_passive_grab_device_modifiers_length(reply.get()) == 0;
}

bool KeyGrabs::grab(const std::vector<xcb_keycode_t>& keys, uint16_t modifiers,
                    const std::vector<uint16_t>& lockStates) {
    ungrab();
    bool isFree = true;
    for (const xcb_keycode_t key : keys) {
        std::vector<uint32_t> states;
        for (const uint16_t locks : lockStates) states.push_back(uint32_t(modifiers | locks));
        isFree = isFree && isFreeInSecondBook(key, states);
        for (const uint32_t state : states) {
            if (!isFree) break;
            const auto cookie = xcb_grab_key_checked(x_, 0, root_, uint16_t(state), key,
                                                     XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
            const x11::Reply<xcb_generic_error_t> error(xcb_request_check(x_, cookie), &std::free);
            if (error)
                isFree = false;
            else
                grabs_.push_back({key, uint16_t(state)});
        }
    }
    if (!isFree) ungrab();
    xcb_flush(x_);
    return isFree;
}

void KeyGrabs::ungrab() {
    for (const Grab& grab : grabs_) xcb_ungrab_key(x_, grab.key, root_, grab.modifiers);
    grabs_.clear();
    xcb_flush(x_);
}

bool KeyGrabs::has(xcb_keycode_t key) const {
    return std::any_of(grabs_.begin(), grabs_.end(), [=](const Grab& g) { return g.key == key; });
}
