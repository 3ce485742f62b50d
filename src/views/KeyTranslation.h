#pragma once
#include <cstdint>
#include <functional>

#include "screen/KeyEvent.h"

class QKeyEvent;

/// The keysym that a key has without modifiers. scanCode: evdev's plus 8, as X11 has it; group: the
/// group of the key map that counts. 0: none.
using KeySymbols = std::function<uint32_t(uint32_t scanCode, unsigned group)>;

/// From the desktop's keys to the program's key codes. Letters and signs go by what the key writes
/// in the active group, so that the letter on the key counts (AZERTY, Dvorak); in a group of
/// another script, by the other groups and then by position, so that Ctrl+C stays where it is.
/// Digits and Latin letters that the table does not have go by position. Editing keys go by their
/// meaning, so that a user's own exchange of keys (Caps Lock for Escape) holds. Threads: main.
/// Fails: kNoKeyCode for a key that the table does not have.
constexpr uint64_t kNoKeyCode = 0xFFFF;

/// keySymbols may be empty: then the symbols that the event itself carries have to do.
KeyEvent keyEventFrom(const QKeyEvent& event, const KeySymbols& keySymbols);

/// The part without Qt: letters, digits and signs of the main block. group is the active one.
uint64_t keyCodeOfCharacterKey(uint32_t scanCode, unsigned group, const KeySymbols& keySymbols);
