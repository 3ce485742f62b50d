#include "core/SearchToggles.h"

#include "modes/TRVSearchMode.h"
#include "modes/framework/ModeHost.h"
#include "util/log.h"
#include "util/queues/MainQueue.h"
#include "util/settings/OVUserDefaults.h"

namespace {

/// Where a mode keeps its switches; null: it has none.
struct ModeSettings {
    uint64_t mode;
    const char* ignoreDiacritics;
    const char* visibleItemTypes;
    const char* matchFilenameOnly;
};

constexpr ModeSettings kModeSettings[] = {
    {kBrowserMode, "browserIgnoreDiacritics", "browserVisibleItemTypes", nullptr},
    {kRecentMode, "recentItemsIgnoreDiacritics", "recentItemsVisibleItemTypes",
     "recentItemsMatchFilenameOnly"},
    {kProjectMode, "projectsIgnoreDiacritics", nullptr, nullptr},
    {kMarkedItemsMode, "markedItemsIgnoreDiacritics", "markedItemsVisibleItemTypes",
     "markedItemsMatchFilenameOnly"},
    {kHistoryMode, "historyIgnoreDiacritics", nullptr, nullptr},
    {kActionsMode, "actionIgnoreDiacritics", nullptr, nullptr},
    {kDataProviderMode, "dataproviderIgnoreDiacritics", nullptr, nullptr},
};

ModeSettings settingsOf(const TRVMode* mode) {
    for (const ModeSettings& each : kModeSettings)
        if (mode && mode->identifier() == each.mode) return each;
    return {};
}

OVUserDefaults& settings() {
    return OVUserDefaults::sharedInstance();
}

void flip(const char* key) {
    settings().setBool(!settings().boolForKey(key), key);
}

}  // namespace

uint64_t SearchToggles::visibleItemTypes() const {
    if (searchMode_.isActive()) {
        const auto project = searchMode_.currentProject();
        return project ? project->visibleItemType : 0;
    }
    const char* key = settingsOf(host_.currentMode()).visibleItemTypes;
    return key ? static_cast<uint64_t>(settings().integerForKey(key)) : 0;
}

SearchToggles::State SearchToggles::state() const {
    const uint64_t types = visibleItemTypes();
    bool filenameOnly = true;  // a listing of one folder
    if (searchMode_.isActive()) {
        const auto project = searchMode_.currentProject();
        filenameOnly = project && project->matchFilenameOnly;
    } else if (const char* key = settingsOf(host_.currentMode()).matchFilenameOnly) {
        filenameOnly = settings().boolForKey(key);
    }
    return {filenameOnly, (types & kFiles) != 0, (types & kDirectories) != 0};
}

void SearchToggles::prefSearchFilenameOnly() {
    const TRVMode* mode = host_.currentMode();
    if (!mode || !(mode->identifier() & kListingModes)) return;
    if (searchMode_.isActive()) {
        searchMode_.changeCurrentProject(
            [](Project& project) { project.matchFilenameOnly = !project.matchFilenameOnly; });
        searchMode_.storeProjects();
    } else {
        flip(settingsOf(mode).matchFilenameOnly);
    }
    searchAgain();
}

void SearchToggles::prefHandleDiacritics() {
    const TRVMode* mode = host_.currentMode();
    if (searchMode_.isActive()) {
        // Kept: for this run alone, it is not written here.
        searchMode_.changeCurrentProject(
            [](Project& project) { project.ignoreDiacritics = !project.ignoreDiacritics; });
    } else if (const char* key = settingsOf(mode).ignoreDiacritics) {
        flip(key);
    } else {
        logError("Unhandled mode: %p", static_cast<const void*>(mode));
    }
    searchAgain();
}

void SearchToggles::adjustFileTypeIndicators(uint64_t bit) {
    uint64_t types = visibleItemTypes() ^ bit;
    if (types == 0) types = bit == kDirectories ? kFiles : kDirectories;
    if (searchMode_.isActive()) {
        searchMode_.changeCurrentProject(
            [types](Project& project) { project.visibleItemType = static_cast<uint8_t>(types); });
        searchMode_.storeProjects();
    } else if (const char* key = settingsOf(host_.currentMode()).visibleItemTypes) {
        settings().setInteger(static_cast<int64_t>(types), key);
    }
    searchAgain();
}

void SearchToggles::searchAgain() {
    TRVMode::switchModeQueue().async([this] {
        host_.reloadInBackgroundAnimated(true);
        MainQueue::async([this] { host_.updateSearchCriterionIndicators(); });
    });
}

void SearchToggles::resetPathFilter() {
    TRVMode::switchModeQueue().async([this] {
        auto* mode = dynamic_cast<TRVModeSupportingPath*>(host_.currentMode());
        if (mode)
            mode->resetPathFilter();
        else
            MainQueue::async([this] { host_.updateSearchCriterionIndicators(); });
    });
}

void SearchToggles::enableMetadata() {
    settings().setBool(true, "processMetadata");
    // Who asks for it wants to see it.
    if (!settings().valueForKey("showMetadata"))
        settings().setInteger(kShowWhatIsQueried, "showMetadata");
}
