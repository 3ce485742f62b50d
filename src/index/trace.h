#pragma once
#include "util/log.h"

/// Lines of the index that are written only while their debug switch is on, and its way of writing
/// the id of a file-system event.
#define traceCache(...) logIf(processFlags.debugCache, Info, __VA_ARGS__)
#define traceScan(...) logIf(processFlags.debugScan, Info, __VA_ARGS__)
using EventId = unsigned long long;  // as %llu wants it
