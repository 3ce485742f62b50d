#pragma once
#include <cstdint>
#include <string>

/// What the user reads of an item's size and kind.
/// Threads: any. Units: bytes; numbers in the decimal style of the locale of setlocale(LC_NUMERIC),
/// with three fraction digits at most. Fails: never.

/// "n/a" for a folder, whose size says nothing; "1,023 Bytes"; "1.5 kiB (1,536 Bytes)".
std::string sizeText(uint64_t size, uint16_t mode);
/// The kinds of items that a rule is for: "Any", "Folder", "Fi/Bu"; empty for none. Bits other than
/// the three of ItemType's kinds have no say, but that "Any" is exactly 7.
std::string fileTypeMaskToString(uint8_t mask);
