#include "views/KeyTranslation.h"

#include <QKeyEvent>
#include <map>

#include "util/ProcessFlags.h"
#include "views/QtTest.h"

namespace {

// X11 key codes of places on the keyboard, by what a US keyboard writes there.
enum Place : uint32_t { kOne = 10, kQ = 24, kA = 38, kSemicolon = 47, kC = 54 };
enum Code : uint64_t { kCodeA = 0, kCodeC = 8, kCodeQ = 12, kCode1 = 18, kCodeSemicolon = 41 };
constexpr uint32_t kEAcute = 0xe9, kCyrillicEs = 0x6d3;

KeySymbols layout(std::map<std::pair<uint32_t, unsigned>, uint32_t> symbols) {
    return [symbols = std::move(symbols)](uint32_t place, unsigned group) {
        const auto found = symbols.find({place, group});
        return found == symbols.end() ? 0 : found->second;
    };
}

KeyEvent translated(int key, Qt::KeyboardModifiers modifiers, uint32_t place = 0,
                    uint32_t symbol = 0, const QString& text = {}) {
    return keyEventFrom(QKeyEvent(QEvent::KeyPress, key, modifiers, place, symbol, 0, text), {});
}

}  // namespace

class KeyTranslation : public QtTest {};

TEST_F(KeyTranslation, LettersCountByWhatTheKeyWritesAndDigitsByPlace) {
    const auto azerty = layout({{{kQ, 0}, 'a'}, {{kA, 0}, 'q'}, {{kOne, 0}, '&'}});
    EXPECT_EQ(keyCodeOfCharacterKey(kQ, 0, azerty), kCodeA);
    EXPECT_EQ(keyCodeOfCharacterKey(kA, 0, azerty), kCodeQ);
    EXPECT_EQ(keyCodeOfCharacterKey(kOne, 0, azerty), kCode1);
    EXPECT_EQ(keyCodeOfCharacterKey(kSemicolon, 0, layout({{{kSemicolon, 0}, kEAcute}})),
              kCodeSemicolon);
}

TEST_F(KeyTranslation, AnotherScriptCountsByTheOtherGroupsAndThenByPlace) {
    const auto withDvorak = layout({{{kC, 0}, 'j'}, {{kC, 1}, kCyrillicEs}});
    EXPECT_EQ(keyCodeOfCharacterKey(kC, 1, withDvorak), 38u);
    EXPECT_EQ(keyCodeOfCharacterKey(kC, 1, layout({{{kC, 1}, kCyrillicEs}})), kCodeC);
    EXPECT_EQ(keyCodeOfCharacterKey(250, 0, layout({})), kNoKeyCode);
}

TEST_F(KeyTranslation, ModifiersHaveTheProgramsNames) {
    const auto flags = [](Qt::KeyboardModifiers modifiers) {
        return translated(Qt::Key_A, modifiers, kA, 'a').modifierFlags;
    };
    EXPECT_EQ(flags(Qt::NoModifier), 0u);
    EXPECT_EQ(flags(Qt::ControlModifier), kModifierCommand);
    EXPECT_EQ(flags(Qt::AltModifier), kModifierControl);
    EXPECT_EQ(flags(Qt::MetaModifier), kModifierOption);
    EXPECT_EQ(flags(Qt::ShiftModifier), kModifierShift);
    EXPECT_EQ(flags(Qt::GroupSwitchModifier), 0u);  // AltGr is none
    processFlags.swapControlAndOption = true;
    const uint64_t alt = flags(Qt::AltModifier), super = flags(Qt::MetaModifier);
    processFlags.swapControlAndOption = false;
    EXPECT_EQ(alt, kModifierOption);
    EXPECT_EQ(super, kModifierControl);
}

TEST_F(KeyTranslation, AltAndSuperWriteNothing) {
    const auto writes = [](Qt::KeyboardModifiers modifiers, const char* text) {
        const QKeyEvent event(QEvent::KeyPress, Qt::Key_M, modifiers, QString::fromUtf8(text));
        return !isCombinationWithText(event);
    };
    EXPECT_TRUE(writes(Qt::NoModifier, "m"));
    EXPECT_TRUE(writes(Qt::GroupSwitchModifier, "µ"));
    EXPECT_FALSE(writes(Qt::AltModifier, "m"));
    EXPECT_FALSE(writes(Qt::ControlModifier | Qt::AltModifier, "1"));
    EXPECT_FALSE(writes(Qt::MetaModifier, "m"));
    EXPECT_TRUE(writes(Qt::AltModifier, "")) << "such as Alt+Left: the editor's own";
}

TEST_F(KeyTranslation, ArrowsAndEditingKeysCarryTheirBits) {
    constexpr uint64_t kArrow = kModifierNumericPad | kModifierFunction;
    const struct {
        int key;
        Qt::KeyboardModifiers modifiers;
        uint64_t code, flags;
    } cases[] = {
        {Qt::Key_Left, {}, kKeyLeft, kArrow},
        {Qt::Key_Up, Qt::ShiftModifier, kKeyUp, kArrow | kModifierShift},
        {Qt::Key_Home, {}, kKeyHome, kModifierFunction},
        {Qt::Key_PageDown, {}, kKeyPageDown, kModifierFunction},
        {Qt::Key_End, Qt::KeypadModifier, kKeyEnd, kModifierFunction},
        {Qt::Key_Delete, Qt::ControlModifier, kKeyForwardDelete,
         kModifierFunction | kModifierCommand},
        {Qt::Key_Backspace, {}, kKeyDelete, 0},
        {Qt::Key_Return, {}, kKeyReturn, 0},
        {Qt::Key_Enter, Qt::KeypadModifier, kKeyEnter, kModifierNumericPad},
        {Qt::Key_Backtab, Qt::ShiftModifier, kKeyTab, kModifierShift},
        {Qt::Key_Escape, {}, kKeyEscape, 0},
        {Qt::Key_Space, {}, kKeySpace, 0},
    };
    for (const auto& wanted : cases) {
        const KeyEvent event = translated(wanted.key, wanted.modifiers);
        EXPECT_EQ(event.keyCode, wanted.code) << wanted.key;
        EXPECT_EQ(event.modifierFlags, wanted.flags) << wanted.key;
    }
}

TEST_F(KeyTranslation, TheEventsOwnSymbolServesWhereNobodyKnowsTheKeyMap) {
    EXPECT_EQ(translated(Qt::Key_A, {}, kQ, 'a', "a").keyCode, kCodeA);
    EXPECT_EQ(translated(Qt::Key_A, Qt::ShiftModifier, kQ, 'A', "A").keyCode, kCodeA);
    EXPECT_EQ(translated(0x042b, Qt::ControlModifier, kC, kCyrillicEs).keyCode, kCodeC);
    EXPECT_EQ(translated(Qt::Key_A, {}, kQ, 'a', "a").characters, u"a");
}

TEST_F(KeyTranslation, TellsWhetherAKeyWentDownOrUpOrChangedTheFlags) {
    const auto event = [](QEvent::Type type, int key, Qt::KeyboardModifiers modifiers) {
        return keyEventFrom(QKeyEvent(type, key, modifiers), {});
    };
    EXPECT_EQ(event(QEvent::KeyPress, Qt::Key_Q, {}).kind, KeyEvent::Kind::down);
    EXPECT_EQ(event(QEvent::KeyRelease, Qt::Key_Q, {}).kind, KeyEvent::Kind::up);
    // The flags are those after the key, which the toolkit's event does not have yet.
    const KeyEvent down = event(QEvent::KeyPress, Qt::Key_Alt, Qt::ControlModifier);
    EXPECT_EQ(down.kind, KeyEvent::Kind::flagsChanged);
    EXPECT_EQ(down.modifierFlags, kModifierCommand | kModifierControl);
    EXPECT_EQ(down.keyCode, kNoKeyCode);
    EXPECT_EQ(event(QEvent::KeyRelease, Qt::Key_Shift, Qt::ShiftModifier).modifierFlags, 0u);
}

TEST_F(KeyTranslation, KeysOfTheKeyboardHaveTheCodesOfTheirEvents) {
    constexpr uint32_t kReturnSymbol = 0xff0d, kEscapeSymbol = 0xff1b, kF5Symbol = 0xffc2;
    // Escape on the key of Caps Lock, and the keypad without Num Lock.
    const auto keyboard = layout({{{66, 0}, kEscapeSymbol},
                                  {{36, 0}, kReturnSymbol},
                                  {{71, 0}, kF5Symbol},
                                  {{90, 0}, 0xff9e},
                                  {{kQ, 0}, 'a'}});
    EXPECT_EQ(keyCodeOfKey(66, 0, keyboard), kKeyEscape);
    EXPECT_EQ(keyCodeOfKey(36, 0, keyboard), kKeyReturn);
    EXPECT_EQ(keyCodeOfKey(71, 0, keyboard), 96u);
    EXPECT_EQ(keyCodeOfKey(90, 0, keyboard), 82u);
    EXPECT_EQ(keyCodeOfKey(kQ, 0, keyboard), kCodeA);
    EXPECT_EQ(keyCodeOfKey(kQ, 0, {}), kCodeQ);
    EXPECT_EQ(keyCodeOfKey(200, 0, keyboard), kNoKeyCode);
}

TEST_F(KeyTranslation, AHotKeyReadsAsItIsPressed) {
    EXPECT_EQ(hotKeyText(kKeySpace, kModifierCommand | kModifierControl), "Ctrl+Alt+Space");
    EXPECT_EQ(hotKeyText(kCodeQ, kModifierOption | kModifierShift), "Super+Shift+Q");
    EXPECT_EQ(hotKeyText(kKeyUp, kModifierNumericPad | kModifierFunction), "Up");
    EXPECT_EQ(hotKeyText(kNoKeyCode, 0), "");
}
