#include "screen/linuxSecondKeys.h"

#include <gtest/gtest.h>

#include "screen/keyCodes.h"
#include "util/ProcessFlags.h"

TEST(LinuxSecondKeys, BecomeTheProgramsOwn) {
    constexpr uint64_t kCommand = kModifierCommand, kControl = kModifierControl,
                       kOption = kModifierOption, kShift = kModifierShift,
                       kFunction = kModifierFunction;
    const struct {
        KeyEvent pressed, meant;
    } cases[] = {
        {{kKeyForwardDelete, kCommand | kFunction}, {kKeyDelete, kCommand}},
        {{kKeyDelete, kCommand}, {kKeyW, kControl, u"\x17"}},
        {{kKeyW, kControl, u"w"}, {kKeyW, kControl, u"\x17"}},
        {{kKeyW, kCommand, u"\x17"}, {kKeyW, kCommand, u"w"}},  // closes
        {{kKeyF2, kFunction}, {kKeyReturn, kControl}},
        {{kKeyF11, kFunction}, {kKeySpace, kControl | kShift}},
        {{kKeyEscape, kShift}, {kKeyEscape, kOption}},
        {{kKeyC, kCommand | kControl}, {kKeyReturn, kOption}},
        {{kKeyC, kCommand | kControl | kShift}, {kKeyReturn, kOption | kShift}},
        {{kKeyEnter, kModifierNumericPad, u"\r"}, {kKeyReturn, 0, u"\r"}},
        // And these stay.
        {{kKeyEscape, 0, u"\x1b"}, {kKeyEscape, 0, u"\x1b"}},
        {{kKeyF2, kFunction | kShift}, {kKeyF2, kFunction | kShift}},
        {{kKeyForwardDelete, kFunction}, {kKeyForwardDelete, kFunction}},
        {{kKeyDelete, 0, u"\b"}, {kKeyDelete, 0, u"\b"}},
        {{kKeyC, kCommand, u"c"}, {kKeyC, kCommand, u"c"}},
    };
    for (const auto& c : cases) {
        const KeyEvent event = withSecondKeysTranslated(c.pressed);
        EXPECT_EQ(event.keyCode, c.meant.keyCode) << c.pressed.keyCode;
        EXPECT_EQ(event.modifierFlags, c.meant.modifierFlags) << c.pressed.keyCode;
        EXPECT_EQ(event.characters, c.meant.characters) << c.pressed.keyCode;
    }
}

TEST(LinuxSecondKeys, StayWhereTheyAreOnTheKeyboardWhenControlAndOptionAreSwapped) {
    constexpr uint64_t kCtrlAlt = kModifierCommand | kModifierOption;
    processFlags.swapControlAndOption = true;
    const KeyEvent copies = withSecondKeysTranslated({kKeyC, kCtrlAlt});
    const KeyEvent renames = withSecondKeysTranslated({kKeyF2, kModifierFunction});
    const std::string text = hotKeyText(kKeyC, kCtrlAlt);
    processFlags.swapControlAndOption = false;
    EXPECT_EQ(copies.keyCode, kKeyReturn);
    EXPECT_EQ(copies.modifierFlags, kModifierOption);
    EXPECT_EQ(renames.modifierFlags, kModifierControl);
    EXPECT_EQ(text, "Ctrl+Alt+C");
}
