#pragma once
#include <optional>
#include <string>
#include <string_view>

/// How the console's JSON carries what is no valid text. A JSON library takes and gives valid UTF-8
/// alone; so inside the console a lone UTF-16 surrogate stands as a character of a private plane,
/// U+10F000 + (unit - U+D800), and a character that stands there by itself as the two of its units.
/// Every text thus survives the way in and out. "Carried" text is valid UTF-8 in that form.
/// Threads: any. Pure functions.

/// A line of JSON as it came, in carried form: \ud83d alone becomes the character for U+D83D.
std::string carriedFromJson(std::string_view json);
/// The way back, for what a JSON library has printed: valid JSON with lone surrogates as escapes.
std::string jsonFromCarried(std::string_view json);

/// Text that is no path: UTF-16 units, lone surrogates included.
std::u16string unitsFromCarried(std::string_view carried);
std::string carriedFromUnits(std::u16string_view units);

/// Paths and names: a byte that is no valid UTF-8 is the lone surrogate U+DC00 + the byte. Nothing
/// for text with a lone surrogate that is no byte.
std::optional<std::string> pathFromCarried(std::string_view carried);
std::string carriedFromPath(std::string_view bytes);
