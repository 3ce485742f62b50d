#pragma once
#include <cstdint>

/// One bit a mode, so that masks stand for groups of them.
enum ModeIdentifier : uint64_t {
    kSearchMode = 1,
    kBrowserMode = 2,
    kRecentMode = 4,
    kMarkedItemsMode = 8,
    kProjectMode = 16,
    kActionsMode = 32,
    kDataProviderMode = 64,
    kHistoryMode = 128,
    kFileModes = 15,     // rows are files; several may be selected
    kListingModes = 13,  // Search, Recent, Marked
    kSubModes = 224,     // have a parent mode
};
