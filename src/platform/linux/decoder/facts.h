#pragma once
#include <string>
#include <vector>

#include "platform/Previews.h"
#include "platform/linux/decoder/OpenedItem.h"

/// What the file system tells of an item, as lines for the user. Threads: the decoder's.
std::vector<Preview::Fact> factsOf(const std::string& path, const OpenedItem& item);
/// "3.4 MiB".
std::string sizeText(int64_t bytes);
/// "1,234".
std::string numberText(int64_t number);
/// "1920 × 1080".
std::string dimensionsText(int64_t width, int64_t height);
