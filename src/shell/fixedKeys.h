#pragma once
#include <cstdint>
#include <span>
#include <string_view>

#include "screen/keyCodes.h"

/// What keys do that no setting changes, for those who read about them; SearchFieldKeys, the modes
/// and QuitByHold do it. A plain table, in the order of the help. Threads: any.
struct FixedKeys {
    /// All missing: there is no such combination.
    struct Combination {
        uint64_t modifierFlags = 0;
        uint64_t keyCode = kNoKeyCode;
        std::string_view cap = {};  // for several keys: "1–9"
    };
    std::string_view section;  // of the commands; or kListSection
    std::string_view name;     // a command's identifier: its keys besides those in the settings
    uint64_t modes;            // mask
    Combination first, second = {};
    bool ofSelection = false;  // done to the items that are selected
};
std::span<const FixedKeys> fixedKeys();

/// A section that no command is in.
constexpr std::string_view kListSection = "Moving in the List";
