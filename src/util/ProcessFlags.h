#pragma once
#include "util/Relaxed.h"

/// Settings that hot paths look at, mirrored in plain words. Written by the settings observers on
/// the main thread (ProcessFlagsMirror), read on every thread without a lock. Zero-initialised.
struct ProcessFlags {
    Relaxed<bool> debugFsEvents, debugScan, debugRules, debugSearch, debugCache, dumpCache,
        debugPerformance, debugSelection, debugFilePromises;
    /// Whether scans and events collect fs_item_metadata.
    Relaxed<bool> processMetadata;
    /// Alt is Option and Super is Control, instead of the other way round.
    Relaxed<bool> swapControlAndOption;
};

extern ProcessFlags processFlags;
