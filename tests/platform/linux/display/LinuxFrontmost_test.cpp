#include "platform/linux/LinuxFrontmost.h"

#include <QWidget>
#include <optional>

#include "platform/linux/LinuxHotKeys.h"
#include "platform/linux/display/DisplayTest.h"
#include "screen/KeyEvent.h"

namespace {

const std::string kNames("some\0Some\0", 10);

class LinuxFrontmostTest : public DisplayTest {
  protected:
    bool isActive(OtherProgram& other, xcb_window_t window) {
        return soon([&] { return other.activeWindow() == window; });
    }
};

}  // namespace

TEST_F(LinuxFrontmostTest, TheKeyboardGoesBackToTheWindowThatHadIt) {
    LinuxFrontmost frontmost;
    OtherProgram other;
    const xcb_window_t first = other.showWindow(kNames, "org.example.Two");
    ASSERT_TRUE(isActive(other, first));
    const xcb_window_t second = other.showWindow(kNames, "org.example.Two");
    ASSERT_TRUE(isActive(other, second));
    const xcb_window_t third = other.showWindow(kNames, "org.example.Three");
    ASSERT_TRUE(isActive(other, third));
    ASSERT_TRUE(frontmost.activateRunningApplication("org.example.Two"));
    ASSERT_TRUE(isActive(other, second));  // the topmost of them

    const auto front = frontmost.frontmostApplication();
    ASSERT_TRUE(front);
    EXPECT_EQ(front->bundleIdentifier, "org.example.Two");
    QWidget own;
    own.show();
    frontmost.activateOwnWindow(own.winId());
    ASSERT_TRUE(isActive(other, xcb_window_t(own.winId())));
    EXPECT_EQ(frontmost.frontmostApplication(), front);  // a window of our own does not count
    own.hide();
    ASSERT_TRUE(frontmost.activateRunningApplication("org.example.Two"));
    EXPECT_TRUE(isActive(other, second));

    other.destroy(second);
    ASSERT_TRUE(soon([&] { return other.activeWindow() != second; }));
    ASSERT_TRUE(frontmost.activateRunningApplication("org.example.Two"));
    EXPECT_TRUE(isActive(other, first));
    EXPECT_FALSE(frontmost.activateRunningApplication("org.example.Nobody"));
}

TEST_F(LinuxFrontmostTest, AProgramIsKnownByWhatItsWindowSaysOfIt) {
    LinuxFrontmost frontmost;
    OtherProgram other;
    ASSERT_TRUE(isActive(other, other.showWindow(kNames)));
    EXPECT_EQ(frontmost.frontmostApplication().value().bundleIdentifier, "Some");

    const xcb_window_t silent = other.showWindow({});
    ASSERT_TRUE(isActive(other, silent));
    const auto nameless = frontmost.frontmostApplication();
    ASSERT_TRUE(nameless);
    EXPECT_EQ(nameless->bundleIdentifier, "window-" + std::to_string(silent));
    const xcb_window_t next = other.showWindow(kNames);
    ASSERT_TRUE(isActive(other, next));
    ASSERT_TRUE(frontmost.activateRunningApplication(nameless->bundleIdentifier));
    EXPECT_TRUE(isActive(other, silent));
}

TEST_F(LinuxFrontmostTest, AsksWithTheTimeOfTheKeyThatCalledUs) {
    LinuxFrontmost frontmost;
    LinuxHotKeys hotKeys;  // sees the key before the other
    OtherProgram other;
    const uint32_t mask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_change_window_attributes(other.x, other.root, XCB_CW_EVENT_MASK, &mask);
    const xcb_atom_t request = other.atom("_NET_ACTIVE_WINDOW");
    const auto timeOfRequest = [&] {
        std::optional<uint32_t> time;
        soon([&] {
            while (xcb_generic_event_t* event = xcb_poll_for_event(other.x)) {
                const auto* message = reinterpret_cast<xcb_client_message_event_t*>(event);
                if ((event->response_type & 0x7f) == XCB_CLIENT_MESSAGE && message->type == request)
                    time = message->data.data32[1];
                std::free(event);
            }
            return time.has_value();
        });
        return time;
    };
    QWidget own;
    own.setAttribute(Qt::WA_ShowWithoutActivating);
    own.show();
    pass(200);
    ASSERT_TRUE(hotKeys.registerShortcut({kKeySpace, kModifierCommand | kModifierControl},
                                         [&] { frontmost.activateOwnWindow(own.winId()); }));
    user({"key", "ctrl+alt+space"});
    EXPECT_NE(timeOfRequest().value_or(0), 0u);
    // Later the user may have pressed others elsewhere: no time is better than an old one.
    pass(1300);
    frontmost.activateOwnWindow(own.winId());
    EXPECT_EQ(timeOfRequest().value_or(1), 0u);
}
