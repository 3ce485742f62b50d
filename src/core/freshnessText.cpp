#include "core/freshnessText.h"

#include <algorithm>
#include <array>

#include "util/Unicode.h"
#include "util/grouped.h"

namespace {

constexpr size_t kMostNamed = 6;

std::string timeOf(std::time_t time) {
    std::tm local{};
    std::array<char, 16> text{};
    if (!localtime_r(&time, &local)) return {};
    const size_t length = std::strftime(text.data(), text.size(), "%H:%M:%S", &local);
    return std::string(text.data(), length);
}

}  // namespace

FreshnessText freshnessText(const Freshness& freshness) {
    if (!freshness.hasProject) return {};
    if (freshness.isScanning)
        return {.words = grouped(freshness.entriesRead) + " read",
                .toolTip = "The list grows while the folders are read."};
    if (!freshness.checkedOnly) return {.words = {}, .toolTip = "Live"};
    const std::vector<FileURL>& folders = *freshness.checkedOnly;
    std::string toolTip = "Live, but these folders are only checked now and then";
    if (freshness.lastChecked) toolTip += ", last at " + timeOf(freshness.lastChecked);
    toolTip += ":";
    for (size_t i = 0; i < std::min(kMostNamed, folders.size()); i++)
        toolTip += "\n  • " + displayText(folders[i].path());
    if (folders.size() > kMostNamed)
        toolTip +=
            "\n  • and " + grouped(static_cast<int64_t>(folders.size() - kMostNamed)) + " more";
    return {.words = {}, .toolTip = toolTip};
}
