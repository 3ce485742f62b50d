#pragma once
#include <cstdint>
#include <string_view>
#include <vector>

#include "screen/RowContent.h"

/// Turns the matched positions of an item into marks on the two lines of its row. The positions
/// count UTF-16 units of the precomposed name, or of the precomposed whole path (indexesInFilename
/// false). name and folder are bytes as on disk. Threads: any.
RowContent makeRowText(std::string_view name, std::string_view folder,
                       const std::vector<uint64_t>& matchedIndexes, bool indexesInFilename);
