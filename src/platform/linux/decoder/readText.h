#pragma once
#include <optional>
#include <string>
#include <string_view>

/// A file's beginning as UTF-8, where it is text: UTF-8, UTF-16 with its mark, or a western
/// one-byte code. Nothing for anything else, whatever the file is called. isWhole: nothing was cut
/// off at the end. Long texts lose their end. Threads: any.
struct ReadText {
    std::string text;
    bool isCut = false;
};
std::optional<ReadText> readText(std::string_view bytes, bool isWhole);
constexpr size_t kBytesOfText = 64 * 1024;
