#pragma once
#include <string>

#include "platform/Previews.h"

/// Decoders whose libraries are large stand in modules beside the program, and are loaded for the
/// files that need them. A module that is missing leaves the preview as it is.
/// Threads: the decoder's.
namespace modules {

using Decode = void(int handle, uint32_t pixels, Preview& preview);
constexpr auto kPdf = "trovast-preview-pdf.so", kMedia = "trovast-preview-media.so";
/// Null: there is none.
Decode* load(const std::string& folder, const char* name);

}  // namespace modules

/// What each module has.
extern "C" __attribute__((visibility("default"))) void trovastDecode(int handle, uint32_t pixels,
                                                                     Preview& preview);
