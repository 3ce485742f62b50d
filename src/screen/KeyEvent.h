#pragma once
#include <cstdint>
#include <functional>
#include <string>

/// A key as the program knows it: codes of positions on the keyboard and modifier masks that are
/// stored in the settings, whatever the desktop calls them. Command is Ctrl, Control is Alt, Option
/// is Super.
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

/// Sees each key event of any window of ours before the window does. Main thread.
class KeyEvents {
  public:
    virtual ~KeyEvents() = default;
    /// True: the event goes no further. An empty one ends it.
    virtual void setMonitor(std::function<bool(const KeyEvent&)> monitor) = 0;
};

enum KeyCode : uint64_t {
    kKeyQ = 12,
    kKeyReturn = 36,
    kKeyTab = 48,
    kKeySpace = 49,
    kKeyDelete = 51,
    kKeyEscape = 53,
    kKeyEnter = 76,
    kKeyHome = 115,
    kKeyPageUp = 116,
    kKeyForwardDelete = 117,
    kKeyEnd = 119,
    kKeyPageDown = 121,
    kKeyLeft = 123,
    kKeyRight = 124,
    kKeyDown = 125,
    kKeyUp = 126,
};
