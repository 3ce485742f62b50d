#pragma once
#include <cstdint>
#include <string>

/// The names of the flags of an event, for the log.
std::string fsEventFlagNames(uint32_t flags);
/// The flag with this name, given without the prefix that all share; 0 if there is none.
uint32_t fsEventFlagWithName(std::string_view name);
