#pragma once
#include <cstdint>
#include <string>
#include <string_view>

/// Key combinations as a user of this desktop reads them. Threads: any.

/// "Ctrl+Alt+Shift+P"; empty for no key. Key code and modifiers as in screen/KeyEvent.h.
std::string shortcutText(uint64_t keyCode, uint64_t modifierFlags);
/// The key alone: "P".
std::string keyText(uint64_t keyCode, uint64_t modifierFlags);
/// The keys of a command as the user has them; empty if it has none. Main thread.
std::string stringRepresentationFor(std::string_view identifier);
