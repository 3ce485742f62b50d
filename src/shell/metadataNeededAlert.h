#pragma once
#include "screen/Alerts.h"

/// The question to a user who wants metadata shown while none is read. The first button has it
/// read.
inline Alert metadataNeededAlert() {
    return {.title = "Incompatible configuration options",
            .text =
                "You have selected to show metadata in the result list but did not enable "
                "metadata scanning.",
            .buttons = {"Enable Metadata Scanning", "Don't Show Metadata"}};
}
