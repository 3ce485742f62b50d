#pragma once
#include <string>
#include <string_view>

/// Adds the precomposed UTF-16 text of bytes. False when they are not valid UTF-8.
bool appendPrecomposed(std::string_view bytes, std::u16string& text);
