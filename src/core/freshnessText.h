#pragma once
#include <string>

#include "modes/Freshness.h"

/// How true the list is, for the user. Pure; times are local.
struct FreshnessText {
    std::string words;    // while it is being made
    std::string toolTip;  // "Live", or what is only checked
};
FreshnessText freshnessText(const Freshness& freshness);
