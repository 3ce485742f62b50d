#pragma once
#include <optional>
#include <string>

#include "platform/Previews.h"
#include "util/FunctionRef.h"

/// What the program does with one path. Enters the sandbox once all that it needs is open.
/// Threads: the decoder's only one.
struct DecodeTask {
    std::string path;
    uint32_t pixels = 0;        // longest side of a picture
    std::string programFolder;  // with the modules
};
Preview makePreview(const DecodeTask& task);

/// The picture alone, from the store where it has one of the file as it is now. Facts: "MTime", and
/// "Source": "store", "file", or "failed", where the store says that there can be none, or "none",
/// where the decoder for it is missing. The same facts are announced before the file is looked
/// into, in case that this ends the program. Nothing: files like this have no thumbnails.
std::optional<Preview> makeThumbnail(const DecodeTask& task, const std::string& store,
                                     FunctionRef<void(const Preview&)> announce);
