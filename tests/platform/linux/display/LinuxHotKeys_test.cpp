#include "platform/linux/LinuxHotKeys.h"

#include <xcb/xinput.h>
#include <QWidget>

#include <algorithm>

#include "platform/linux/KeyboardMap.h"
#include "platform/linux/X11.h"
#include "platform/linux/display/DisplayTest.h"
#include "screen/KeyEvent.h"

namespace {

constexpr HotKey kCtrlAltSpace{kKeySpace, kModifierCommand | kModifierControl};
constexpr HotKey kSuperQ{kKeyQ, kModifierOption};

class LinuxHotKeysTest : public DisplayTest {
  protected:
    void SetUp() override {
        DisplayTest::SetUp();
        if (IsSkipped()) return;
        hotKeys = std::make_unique<LinuxHotKeys>();
        other = std::make_unique<OtherProgram>();
        useLayout("us");
    }
    void TearDown() override {
        if (IsSkipped()) return;
        hotKeys.reset();
        useLayout("us");
    }
    static void useLayout(const char* layout) {
        ASSERT_EQ(QProcess::execute(QStringLiteral("setxkbmap"), {layout}), 0);
        pass(150);
    }
    Result<void> use(const HotKey& hotKey) {
        return hotKeys->registerShortcut(hotKey, [this] { presses++; });
    }
    bool reaches(const char* keys) {
        const int before = presses;
        user({"key", keys});
        within(400, [&] { return presses > before; });
        return presses == before + 1;
    }
    xcb_keycode_t keyOf(uint64_t keyCode) const {
        return KeyboardMap(x11::connection()).keysOf(keyCode).at(0);
    }

    int presses = 0;
    std::unique_ptr<LinuxHotKeys> hotKeys;
    std::unique_ptr<OtherProgram> other;
};

}  // namespace

TEST_F(LinuxHotKeysTest, ReachesUsOncePerPressWhateverLocksAreOn) {
    ASSERT_TRUE(use(kCtrlAltSpace));
    for (const char* lock : {"Num_Lock", "Caps_Lock", "Num_Lock", "Caps_Lock"}) {
        EXPECT_TRUE(reaches("ctrl+alt+space")) << lock;
        user({"key", lock});
    }
    EXPECT_FALSE(reaches("ctrl+space"));
    EXPECT_FALSE(reaches("ctrl+alt+shift+space"));
    EXPECT_TRUE(reaches("ctrl+alt+space"));
}

TEST_F(LinuxHotKeysTest, AKeyThatIsHeldDoesNotRepeat) {
    ASSERT_TRUE(use(kCtrlAltSpace));
    user({"keydown", "ctrl", "keydown", "alt", "keydown", "space"});
    pass(1500);
    EXPECT_EQ(presses, 1);
    user({"keyup", "space", "keyup", "alt", "keyup", "ctrl"});
    pass(100);
    EXPECT_EQ(presses, 1);
    EXPECT_TRUE(reaches("ctrl+alt+space"));
}

TEST_F(LinuxHotKeysTest, ItReachesUsWhileAWindowOfOursHasTheKeyboard) {
    ASSERT_TRUE(use(kCtrlAltSpace));
    QWidget window;
    window.show();
    ASSERT_TRUE(soon([&] { return window.isActiveWindow(); }));
    user({"keydown", "ctrl", "keydown", "alt", "keydown", "space"});
    pass(1000);
    user({"keyup", "space", "keyup", "alt", "keyup", "ctrl"});
    pass(100);
    EXPECT_EQ(presses, 1);
    EXPECT_TRUE(reaches("ctrl+alt+space"));
}

TEST_F(LinuxHotKeysTest, AnotherKeyTakesThePlaceOfTheFirst) {
    ASSERT_TRUE(use(kCtrlAltSpace));
    ASSERT_TRUE(use(kSuperQ));
    EXPECT_FALSE(reaches("ctrl+alt+space"));
    EXPECT_TRUE(reaches("super+q"));
    hotKeys->unregisterShortcut();
    EXPECT_FALSE(reaches("super+q"));
    ASSERT_TRUE(use(kSuperQ));
    ASSERT_TRUE(use({}));
    EXPECT_FALSE(reaches("super+q"));
}

TEST_F(LinuxHotKeysTest, SaysWhenAnotherProgramHasTheKey) {
    const auto expectTaken = [&] {
        ASSERT_TRUE(use(kSuperQ));
        const auto result = use(kCtrlAltSpace);
        ASSERT_FALSE(result);
        EXPECT_EQ(result.error().description,
                  "Another program holds Ctrl+Alt+Space: choose another hot key.");
        EXPECT_FALSE(reaches("super+q"));  // given up all the same
    };
    const xcb_keycode_t space = keyOf(kKeySpace);
    const uint16_t modifiers = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1;
    // Only while Num Lock is on: half a hot key would be none.
    xcb_grab_key(other->x, 1, other->root, modifiers | XCB_MOD_MASK_2, space, XCB_GRAB_MODE_ASYNC,
                 XCB_GRAB_MODE_ASYNC);
    std::free(xcb_get_input_focus_reply(other->x, xcb_get_input_focus(other->x), nullptr));
    expectTaken();
    xcb_ungrab_key(other->x, space, other->root, XCB_MOD_MASK_ANY);
    std::free(xcb_get_input_focus_reply(other->x, xcb_get_input_focus(other->x), nullptr));
    ASSERT_TRUE(use(kCtrlAltSpace));
    hotKeys->unregisterShortcut();

    // The other kind of grab, which the first knows nothing of.
    std::free(xcb_input_xi_query_version_reply(other->x, xcb_input_xi_query_version(other->x, 2, 2),
                                               nullptr));
    const uint32_t mask = XCB_INPUT_XI_EVENT_MASK_KEY_PRESS, state = modifiers;
    std::free(xcb_input_xi_passive_grab_device_reply(
        other->x,
        xcb_input_xi_passive_grab_device(other->x, XCB_CURRENT_TIME, other->root, XCB_CURSOR_NONE,
                                         space, 1, 1, 1, XCB_INPUT_GRAB_TYPE_KEYCODE,
                                         XCB_INPUT_GRAB_MODE_22_ASYNC, XCB_INPUT_GRAB_MODE_22_ASYNC,
                                         XCB_INPUT_GRAB_OWNER_NO_OWNER, &mask, &state),
        nullptr));
    expectTaken();
}

TEST_F(LinuxHotKeysTest, TheLetterOnTheKeyCountsAlsoAfterAChangeOfTheLayout) {
    ASSERT_TRUE(use(kSuperQ));
    const xcb_keycode_t usual = keyOf(kKeyQ);
    EXPECT_TRUE(reaches(("super+" + std::to_string(usual)).c_str()));
    useLayout("fr");
    const xcb_keycode_t french = keyOf(kKeyQ);
    EXPECT_NE(french, usual);
    EXPECT_TRUE(reaches(("super+" + std::to_string(french)).c_str()));
    EXPECT_FALSE(reaches(("super+" + std::to_string(usual)).c_str()));
}

TEST_F(LinuxHotKeysTest, EveryKeyIsFoundWhereItIsOnTheKeyboard) {
    const KeyboardMap map(x11::connection());
    const struct {
        uint64_t code;
        xcb_keycode_t key;
    } cases[] = {{kKeySpace, 65}, {kKeyReturn, 36}, {kKeyQ, 24}, {18, 10},        {122, 67},
                 {kKeyUp, 111},   {82, 90},         {50, 49},    {kKeyEnter, 104}};
    for (const auto& [code, key] : cases) {
        const auto keys = map.keysOf(code);
        EXPECT_EQ(std::count(keys.begin(), keys.end(), key), 1) << code;
    }
    EXPECT_TRUE(map.keysOf(500).empty());
    const auto result = use({500, kModifierCommand});
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error().description, "This keyboard has no key for Ctrl+key 500.");
}
