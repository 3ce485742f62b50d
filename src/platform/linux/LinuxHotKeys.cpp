#include "platform/linux/LinuxHotKeys.h"

#include <QAbstractNativeEventFilter>
#include <QTimer>
#include <cstdlib>

#include "platform/linux/KeyGrabs.h"
#include "platform/linux/KeyboardMap.h"
#include "platform/linux/X11.h"
#include "screen/keyCodes.h"
#include "util/log.h"

namespace {

constexpr int kLayoutSettles = 50;  // milliseconds: one change comes as many events

Error failure(int code, std::string description) {
    return {.domain = "hot key", .code = code, .description = std::move(description)};
}

Result<void> noKeysHere() {
    return failure(1,
                   "This desktop gives programs no global keys; to have one, set a key of your own "
                   "in the desktop's keyboard settings, with the command: trovast");
}

/// An X server inside of a Wayland session tells of keys only while one of its own windows has
/// them.
bool isInsideWayland() {
    const char* display = std::getenv("WAYLAND_DISPLAY");
    return display && *display;
}

}  // namespace

class LinuxHotKeys::Grabber : public QAbstractNativeEventFilter {
  public:
    explicit Grabber(xcb_connection_t* x) : x_(x), grabs_(x) {
        const char* const name = "XKEYBOARD";
        const x11::Reply<xcb_query_extension_reply_t> reply(
            xcb_query_extension_reply(x, xcb_query_extension(x, 9, name), nullptr), &std::free);
        if (reply && reply->present) xkbEvent_ = reply->first_event;
        settle_.setSingleShot(true);
        QObject::connect(&settle_, &QTimer::timeout, [this] { grabAgain(); });
        qApp->installNativeEventFilter(this);
    }
    ~Grabber() override { giveUp(); }
    Grabber(const Grabber&) = delete;
    Grabber& operator=(const Grabber&) = delete;

    Result<void> grab(const HotKey& hotKey, std::function<void()> action) {
        giveUp();
        if (hotKey.isNone()) return {};
        const std::string name = hotKeyText(hotKey.keyCode, hotKey.modifierFlags);
        const KeyboardMap map(x_);
        const auto keys = map.keysOf(hotKey.keyCode);
        if (keys.empty()) return failure(2, "This keyboard has no key for " + name + ".");
        if (!grabs_.grab(keys, map.stateOf(hotKey.modifierFlags), map.lockStates()))
            return failure(3, "Another program holds " + name + ": choose another hot key.");
        hotKey_ = hotKey;
        action_ = std::move(action);
        return {};
    }

    void giveUp() {
        grabs_.ungrab();
        hotKey_ = {};
        action_ = {};
        held_ = false;
    }

    bool nativeEventFilter(const QByteArray& type, void* message, qintptr*) override {
        if (type != "xcb_generic_event_t") return false;
        const auto* event = static_cast<const xcb_generic_event_t*>(message);
        const uint8_t kind = event->response_type & 0x7f;
        if (kind == XCB_KEY_PRESS || kind == XCB_KEY_RELEASE)
            keyMoved(*reinterpret_cast<const xcb_key_press_event_t*>(event), kind);
        // Of the keyboard extension, 0 is another keyboard and 1 another layout.
        const bool isNewLayout =
            kind == XCB_MAPPING_NOTIFY || (kind == xkbEvent_ && kind != 0 && event->pad0 <= 1);
        if (isNewLayout && action_) settle_.start(kLayoutSettles);
        return false;
    }

  private:
    void keyMoved(const xcb_key_press_event_t& key, uint8_t kind) {
        if (!action_ || key.event != key.root || !grabs_.has(key.detail)) return;
        if (kind == XCB_KEY_RELEASE) {
            held_ = false;
            released_ = key.time;
            return;
        }
        // A key that repeats comes up and goes down in the same millisecond.
        const bool isRepeat = held_ || (key.detail == lastKey_ && key.time == released_);
        held_ = true;
        lastKey_ = key.detail;
        if (isRepeat) return;
        // On a later turn: whoever needs the time of the user's last key has seen this one then.
        QTimer::singleShot(0, &settle_, [this] {
            if (const auto action = action_) action();
        });
    }

    void grabAgain() {
        if (!action_) return;
        const HotKey hotKey = hotKey_;
        auto action = action_;
        const auto result = grab(hotKey, action);
        if (result) return;
        logWarning("After a change of the keyboard: %s", result.error().description.c_str());
        hotKey_ = hotKey;  // the next change may bring it back
        action_ = std::move(action);
    }

    xcb_connection_t* const x_;
    KeyGrabs grabs_;
    uint8_t xkbEvent_ = 0;
    HotKey hotKey_;
    std::function<void()> action_;  // empty: no hot key is registered
    bool held_ = false;
    xcb_keycode_t lastKey_ = 0;
    xcb_timestamp_t released_ = 0;
    QTimer settle_;
};

LinuxHotKeys::LinuxHotKeys() {
    xcb_connection_t* const x = x11::connection();
    if (x && !isInsideWayland()) grabber_ = std::make_unique<Grabber>(x);
}

LinuxHotKeys::~LinuxHotKeys() = default;

Result<void> LinuxHotKeys::registerShortcut(const HotKey& hotKey, std::function<void()> action) {
    if (hotKey.isNone()) {
        unregisterShortcut();
        return {};
    }
    return grabber_ ? grabber_->grab(hotKey, std::move(action)) : noKeysHere();
}

void LinuxHotKeys::unregisterShortcut() {
    if (grabber_) grabber_->giveUp();
}
