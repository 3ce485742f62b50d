#include "core/SearchToggles.h"

#include "modes/TRVSearchMode.h"
#include "modes/framework/ModeHost.h"
#include "util/log.h"
#include "util/settings/OVUserDefaults.h"

namespace {

void flip(const char* setting) {
    auto& settings = OVUserDefaults::sharedInstance();
    settings.setBool(!settings.boolForKey(setting), setting);
}

/// The setting of a mode that says whether diacritics count; null: it has none.
const char* diacriticsSetting(ModeIdentifier mode) {
    switch (mode) {
        case kBrowserMode:
            return "browserIgnoreDiacritics";
        case kRecentMode:
            return "recentItemsIgnoreDiacritics";
        case kProjectMode:
            return "projectsIgnoreDiacritics";
        case kMarkedItemsMode:
            return "markedItemsIgnoreDiacritics";
        case kHistoryMode:
            return "historyIgnoreDiacritics";
        case kActionsMode:
            return "actionIgnoreDiacritics";
        case kDataProviderMode:
            return "dataproviderIgnoreDiacritics";
        default:
            return nullptr;
    }
}

const char* visibleTypesSetting(ModeIdentifier mode) {
    switch (mode) {
        case kBrowserMode:
            return "browserVisibleItemTypes";
        case kRecentMode:
            return "recentItemsVisibleItemTypes";
        case kMarkedItemsMode:
            return "markedItemsVisibleItemTypes";
        default:
            return nullptr;
    }
}

/// The current project with one preference changed.
template <class Change>
bool changeProject(TRVSearchMode& searchMode, Change change) {
    const auto current = searchMode.currentProject();
    if (!current) return false;
    auto project = std::make_shared<Project>(*current);
    change(*project);
    searchMode.replaceProject(project);
    return true;
}

}  // namespace

void SearchToggles::reload() {
    TRVMode::switchModeQueue().async([this] {
        host_.reloadInBackgroundAnimated(true);
        MainQueue::async([this] { host_.updateTextsOfCurrentMode(); });
    });
}

void SearchToggles::prefSearchFilenameOnly() {
    const TRVMode* mode = host_.currentMode();
    if (!mode || !(mode->identifier() & kListingModes)) return;
    if (mode->identifier() == kSearchMode) {
        if (changeProject(searchMode_, [](Project& project) {
                project.matchFilenameOnly = !project.matchFilenameOnly;
            }))
            searchMode_.storeProjects();
    } else {
        flip(mode->identifier() == kMarkedItemsMode ? "markedItemsMatchFilenameOnly"
                                                    : "recentItemsMatchFilenameOnly");
    }
    reload();
}

void SearchToggles::prefHandleDiacritics() {
    const TRVMode* mode = host_.currentMode();
    if (!mode) return;
    if (mode->identifier() == kSearchMode) {
        changeProject(searchMode_, [](Project& project) {
            project.ignoreDiacritics = !project.ignoreDiacritics;
        });
    } else if (const char* setting = diacriticsSetting(mode->identifier())) {
        flip(setting);
    } else {
        logError("Unhandled mode: %llu", static_cast<unsigned long long>(mode->identifier()));
    }
    reload();
}

void SearchToggles::adjustFileTypeIndicators(Kind bit) {
    const TRVMode* mode = host_.currentMode();
    if (!mode) return;
    const auto flipped = [bit](int64_t mask) {
        const int64_t left = mask ^ bit;
        return left != 0 ? left : int64_t{bit == kFolders ? kFiles : kFolders};
    };
    if (mode->identifier() == kSearchMode) {
        if (changeProject(searchMode_, [&](Project& project) {
                project.visibleItemType = static_cast<uint8_t>(flipped(project.visibleItemType));
            }))
            searchMode_.storeProjects();
    } else if (const char* setting = visibleTypesSetting(mode->identifier())) {
        auto& settings = OVUserDefaults::sharedInstance();
        settings.setInteger(flipped(settings.integerForKey(setting)), setting);
    }
    reload();
}
