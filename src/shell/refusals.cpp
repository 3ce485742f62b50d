#include "shell/refusals.h"

namespace {
constexpr size_t kItemsLookedAt = 100;
}

std::vector<FileURL> itemsLookedAt(std::vector<FileURL> items) {
    if (items.size() > kItemsLookedAt) items.resize(kItemsLookedAt);
    return items;
}

Refusals refusalsOf(const std::vector<FileURL>& items, const KeyboardShortcutEntries& commands) {
    Refusals refusals;
    for (const KeyboardShortcutEntry& entry : commands) {
        if (!entry.definition) continue;
        if (const auto usable = entry.definition->usableOnPaths(items); !usable)
            refusals[entry.definition->identifier()] = usable.error().description;
    }
    return refusals;
}
