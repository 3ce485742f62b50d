#pragma once
#include <cstdint>
#include <functional>
#include <string>

/// The keysym that a key has without modifiers. scanCode: evdev's plus 8, as X11 has it; group: the
/// group of the key map that counts. 0: none.
using KeySymbols = std::function<uint32_t(uint32_t scanCode, unsigned group)>;

/// Between the desktop's keys and the program's key codes. Letters and signs go by what the key
/// writes in the active group, so that the letter on the key counts (AZERTY, Dvorak); in a group of
/// another script, by the other groups and then by position, so that Ctrl+C stays where it is.
/// Digits and Latin letters that the table does not have go by position. Editing keys go by their
/// meaning, so that a user's own exchange of keys (Caps Lock for Escape) holds.
/// Owner:   none. Threads: any.
/// Fails:   kNoKeyCode for a key that the table does not have.
constexpr uint64_t kNoKeyCode = 0xFFFF;

/// Letters, digits and signs of the main block. group is the active one; keySymbols may be empty,
/// then only the position counts.
uint64_t keyCodeOfCharacterKey(uint32_t scanCode, unsigned group, const KeySymbols& keySymbols);

/// The character that a US keyboard writes there.
uint64_t keyCodeOfCharacter(uint32_t character);

/// Editing, function and keypad keys, by the keysym that the key has without modifiers.
uint64_t keyCodeOfEditingSymbol(uint32_t symbol);

/// Any key of the keyboard.
uint64_t keyCodeOfKey(uint32_t scanCode, unsigned group, const KeySymbols& keySymbols);

/// The program's modifiers on this desktop: Ctrl is Command, Alt is Control and Super is Option, or
/// by the setting swapControlAndOption Alt is Option and Super is Control.
uint64_t modifierOfAlt();
uint64_t modifierOfSuper();

/// For the user, such as "Ctrl+Alt+"; empty for none.
std::string modifiersText(uint64_t modifierFlags);
/// For the user, such as "Ctrl+Alt+Space"; empty for no key.
std::string hotKeyText(uint64_t keyCode, uint64_t modifierFlags);
