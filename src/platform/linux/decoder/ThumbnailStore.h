#pragma once
#include <cstdint>
#include <string>

/// Names and places in the thumbnail store that the programs of a desktop share.
/// Threads: any. Units: bytes.
namespace thumbnailStore {

constexpr int kNormalPixels = 128;
constexpr auto kNormal = "normal", kLarge = "large", kFail = "fail/trovast";
constexpr auto kUriKey = "Thumb::URI", kMTimeKey = "Thumb::MTime";

/// The store in the user's cache folder; reads the environment.
std::string folder();
/// As every program writes it: what is neither a letter, a digit nor one of a few marks, escaped.
std::string uriOf(const std::string& path);
/// Of a URI's file, in each of the store's folders.
std::string nameOf(const std::string& uri);
/// Whether a path is inside the store: of thumbnails there are none.
bool isInside(const std::string& store, const std::string& path);

}  // namespace thumbnailStore
