#include "shell/ProjectKeys.h"

#include <algorithm>

#include "core/ModeSwitcher.h"
#include "core/ProjectSwitcher.h"
#include "core/UserMessages.h"
#include "modes/TRVSearchMode.h"
#include "modes/framework/ModeHost.h"
#include "util/log.h"

namespace {
constexpr uint64_t kModes = kSearchMode | kRecentMode | kProjectMode | kBrowserMode;
constexpr size_t kDigits = 9;
}  // namespace

std::optional<bool> ProjectKeys::handleDigit(uint64_t keyCode, uint64_t flags,
                                             const TRVMode& mode) {
    if ((flags | kModifierShift) != (kModifierCommand | kModifierShift)) return std::nullopt;
    const auto* const digit = std::find(kDigitKeys.begin(), kDigitKeys.begin() + kDigits, keyCode);
    if (digit == kDigitKeys.begin() + kDigits) return std::nullopt;
    const bool moves = (flags & kModifierShift) != 0;
    const bool browses = mode.identifier() == kBrowserMode;
    if (!(mode.identifier() & kModes) || (moves && browses)) return false;
    const auto index = static_cast<size_t>(digit - kDigitKeys.begin());
    if (index >= parts_.searchMode.projects().size()) return true;
    // Projects and mode are those that the keys before have made current.
    TRVMode::switchModeQueue().async([this, index, moves] {
        if (moves)
            MainQueue::sync([&] { moveCurrentProjectTo(index); });
        else
            switchTo(index);
    });
    return true;
}

void ProjectKeys::switchTo(size_t index) {
    std::shared_ptr<const Project> project;
    MainQueue::sync([&] {
        const auto& projects = parts_.searchMode.projects();
        if (index < projects.size()) project = projects[index];
    });
    if (!project) return;
    TRVMode& mode = *parts_.host.currentMode();
    if (mode.identifier() == kBrowserMode) {
        browse(*project);
        return;
    }
    parts_.projectSwitcher.makeCurrentProject(project);
    if (mode.identifier() != kProjectMode) {
        parts_.modeSwitcher.activateMode(mode);
        return;
    }
    parts_.modeSwitcher.activateMode(parts_.searchMode);
    parts_.host.reloadInBackgroundAnimated(false);
    MainQueue::async([this] { parts_.host.updateTextsOfCurrentMode(); });
}

void ProjectKeys::browse(const Project& project) {
    const auto& folders = project.sorderFoldersAsc();
    if (folders.size() != 1) {
        parts_.messages.error(folders.empty() ? "Project has no search folder"
                                              : "Project has multiple search folders");
        return;
    }
    parts_.browsePath(folders.front()->url);
}

void ProjectKeys::moveCurrentProjectTo(size_t index) {
    const auto current = parts_.searchMode.currentProject();
    if (!current) return;
    if (current->isVirtualProject()) {
        parts_.messages.error("Currently project is a virtual project");
        return;
    }
    const auto& projects = parts_.searchMode.projects();
    const auto found = std::find_if(projects.begin(), projects.end(), [&](const auto& project) {
        return project->uuid == current->uuid;
    });
    if (found == projects.end()) return;
    const auto from = static_cast<size_t>(found - projects.begin());
    if (from == index)
        logInfo("Selected project is already in the desired position");
    else
        parts_.searchMode.moveProject(from, index);
}
