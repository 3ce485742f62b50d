#pragma once
#include "Fields.h"

class Cache;

/// The items of an index, sorted by path: the reply of cache.dump. Outside sections.
json dumpOf(Cache& cache, const Fields& request);
