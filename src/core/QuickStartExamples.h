#pragma once
#include <string>
#include <vector>

#include "screen/QuickStartView.h"

class Cache;

/// Three queries that find something of the user's own: an abbreviation of a file's name, two
/// words of one in the other order, and a folder. Fewer where the index has nothing that serves.
/// Threads: any, outside sections.
std::vector<QuickStartContent::Try> quickStartExamples(Cache& cache);
