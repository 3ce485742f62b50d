#pragma once
#include <optional>
#include <utility>

#include "screen/KeyEvent.h"

/// Keys that users of this desktop expect beside those that the program has: F2 renames, F11
/// maximises, Ctrl+Delete moves to the trash, Ctrl+Backspace deletes a word, Shift+Escape clears
/// the filter, Ctrl+Alt+C copies the path. Views translate them on their way into the search field,
/// so that the program sees its own keys alone. Threads: any. Fails: never; other keys come back as
/// they are.
KeyEvent withSecondKeysTranslated(KeyEvent event);

/// The key code and modifiers that do the same as these, where there are any.
std::optional<std::pair<uint64_t, uint64_t>> secondKeysOf(uint64_t keyCode, uint64_t modifierFlags);
