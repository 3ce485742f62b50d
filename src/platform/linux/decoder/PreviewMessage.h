#pragma once
#include <optional>
#include <string>
#include <string_view>

#include "platform/Previews.h"

/// What the decoder program says on its standard output, as records of tag, length and bytes. The
/// reader trusts nothing: each length, number and sum has a bound.
/// Threads: any. Fails: an answer that is cut off, too long or contradicts itself is none.
namespace previewMessage {

constexpr size_t kMostText = 256 * 1024;
constexpr size_t kMostValue = 4096;  // of a name, a fact, the message
constexpr size_t kMostFacts = 32;
constexpr size_t kMostEntries = 500;
constexpr uint32_t kMostPixels = 2048;  // of a side
/// Of all that is said where a picture's longest side is so many pixels.
constexpr size_t mostBytes(uint32_t pixels) {
    return size_t{pixels} * pixels * 4 + kMostText + kMostEntries * (kMostValue + 8) + 1'000'000;
}

/// What goes beyond the bounds is cut off.
std::string encode(const Preview& preview);
/// One message and nothing behind it. pixels: the longest side that was asked for.
std::optional<Preview> decode(std::string_view bytes, uint32_t pixels);
/// The first of several; it is taken off the bytes.
std::optional<Preview> decodeNext(std::string_view& bytes, uint32_t pixels);

}  // namespace previewMessage
