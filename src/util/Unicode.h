#pragma once
#include <optional>
#include <string>
#include <string_view>

/// The one place where text changes its form. Names on disk are bytes; ranking and rules work on
/// precomposed UTF-16 (NFC). Positions and lengths count UTF-16 units. Threads: any.

/// Nothing when the bytes are not valid UTF-8 (lone surrogates and overlong forms included).
std::optional<std::u16string> toUtf16(std::string_view utf8);
/// Each byte that is not valid UTF-8 becomes U+FFFD.
std::u16string toUtf16Lenient(std::string_view utf8);
/// Lone surrogates become U+FFFD.
std::string toUtf8(std::u16string_view text);

/// Canonical composition and decomposition. Text that cannot be normalised comes back as it is.
std::u16string nfc(std::u16string_view text);
std::u16string nfd(std::u16string_view text);
/// Canonical precomposed UTF-16 of file-system bytes, leniently: what rules look at.
std::u16string ruleText(std::string_view bytes);
/// Decomposes, drops every code point with the Diacritic property, composes again.
std::u16string stringByRemovingDiacritics(std::u16string_view text);
/// Each unit by itself, so that positions stay the same.
std::u16string lowerCasedUnits(std::u16string_view text);

/// Nothing but white space, or nothing at all.
bool isBlank(std::u16string_view text);

/// What a user sees of bytes: valid UTF-8, control and direction characters as visible marks
/// (U+2400 pictures, U+FFFD for the others and for bad bytes).
std::string displayText(std::string_view bytes);

/// What the log keeps of bytes: the same characters and bad bytes as \xNN, byte by byte, so that a
/// line stays one line of valid UTF-8 and no terminal is steered by it.
std::string logText(std::string_view bytes);

/// Paths in JSON: valid UTF-8 in which a byte b that is no valid UTF-8 stands as U+10FF00 + b, and
/// back. Every path survives the way there and back, also one that holds such characters itself.
std::string pathToText(std::string_view bytes);
std::string textToPath(std::string_view text);
