#pragma once
#include <array>
#include <cstdint>
#include <functional>
#include <string>

/// A key as the program knows it: codes of positions on the keyboard and modifier masks that are
/// stored in the settings, whatever the desktop calls them. Command is Ctrl; Control is Alt and
/// Option is Super, unless a setting swaps these two (keyCodes.h).
struct KeyEvent {
    enum class Kind { down, up, flagsChanged };

    uint64_t keyCode = 0;
    uint64_t modifierFlags = 0;
    std::u16string characters = {};
    bool isRepeat = false;
    Kind kind = Kind::down;
};

enum ModifierFlag : uint64_t {
    kModifierShift = 131072,
    kModifierControl = 262144,
    kModifierOption = 524288,
    kModifierCommand = 1048576,
    kModifierNumericPad = 2097152,
    kModifierFunction = 8388608,
};
/// The keys that are held with another one; the other two flags tell of that one.
constexpr uint64_t kHeldModifiers =
    kModifierShift | kModifierControl | kModifierOption | kModifierCommand;

/// Sees each key event of any window of ours before the window does. Main thread.
class KeyEvents {
  public:
    virtual ~KeyEvents() = default;
    /// True: the event goes no further. An empty one ends it.
    virtual void setMonitor(std::function<bool(const KeyEvent&)> monitor) = 0;
};

enum KeyCode : uint64_t {
    kKeyS = 1,
    kKeyC = 8,
    kKeyQ = 12,
    kKeyW = 13,
    kKeyReturn = 36,
    kKeyPeriod = 47,
    kKeyTab = 48,
    kKeySpace = 49,
    kKeyDelete = 51,
    kKeyEscape = 53,
    kKeyEnter = 76,
    kKeyF11 = 103,
    kKeyF10 = 109,
    kKeyMenu = 110,
    kKeyHome = 115,
    kKeyPageUp = 116,
    kKeyForwardDelete = 117,
    kKeyEnd = 119,
    kKeyF2 = 120,
    kKeyPageDown = 121,
    kKeyLeft = 123,
    kKeyRight = 124,
    kKeyDown = 125,
    kKeyUp = 126,
};

/// From 1 to 9, and 0.
constexpr std::array<uint64_t, 10> kDigitKeys = {18, 19, 20, 21, 23, 22, 26, 28, 25, 29};
