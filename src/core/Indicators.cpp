#include "core/Indicators.h"

#include "core/SearchFieldController.h"
#include "core/SearchToggles.h"
#include "modes/framework/TRVModeSupportingPath.h"
#include "shell/registry/shortcutText.h"
#include "util/Unicode.h"

namespace {

/// What a click does, and the keys that do the same.
std::string toolTip(const char* does, const char* command) {
    const std::string keys = stringRepresentationFor(command);
    return keys.empty() ? does : std::string(does) + " (" + keys + ")";
}

}  // namespace

Indicators::Indicators(const Parts& parts) : parts_(parts) {
    parts_.view.setDelegate(this);
}

Indicators::~Indicators() {
    parts_.view.setDelegate(nullptr);
}

IndicatorContent Indicators::resetFilterButton(TRVMode* mode) const {
    const auto* supportingPath = dynamic_cast<TRVModeSupportingPath*>(mode);
    if (!supportingPath || !supportingPath->livePathFilter().hasRules()) return {};
    const std::string keys = stringRepresentationFor("ClearLivePathFilter");
    std::string text = "Result is filtered by path";
    text += keys.empty() ? "\n" : " (" + keys + " to clear)\n";
    for (const std::string& path : supportingPath->livePathFilter().activePaths())
        text += "\n" + displayText(path);
    return {.isShown = true, .isOn = true, .toolTip = text};
}

void Indicators::updateSearchCriterionIndicators() {
    TRVMode* mode = parts_.host.currentMode();
    const bool listsFiles = mode && (mode->identifier() & kFileModes);
    const auto set = [&](IndicatorButton button, bool isOn, const char* whenOn, const char* whenOff,
                         const char* command) {
        parts_.view.setIndicator(
            button, listsFiles
                        ? IndicatorContent{true, isOn, toolTip(isOn ? whenOn : whenOff, command)}
                        : IndicatorContent{});
    };
    const SearchToggles::State state = parts_.toggles.state();
    parts_.view.setIndicator(IndicatorButton::resetFilterButton, resetFilterButton(mode));
    set(IndicatorButton::searchPathOrFile, state.matchFilenameOnly, "Search Full Path",
        "Search Filename Only", "ToggleSearchLastPathComponentOrCompletePath");
    set(IndicatorButton::showFiles, state.showsFiles, "Hide Files", "Show Files",
        "ToggleShowFiles");
    set(IndicatorButton::showFolders, state.showsDirectories, "Hide Directories",
        "Show Directories", "ToggleShowDirectories");
    IndicatorContent enable;
    if (listsFiles && parts_.field.needsMetadata())
        enable = {.isShown = true,
                  .toolTip =
                      "Indexes sizes, dates and owners of all files, so that they can be "
                      "searched. The index is made anew once."};
    parts_.view.setIndicator(IndicatorButton::enableMetadata, enable);
}

void Indicators::indicatorClicked(IndicatorButton button) {
    switch (button) {
        case IndicatorButton::enableMetadata:
            return parts_.toggles.enableMetadata();
        case IndicatorButton::resetFilterButton:
            return parts_.toggles.resetPathFilter();
        case IndicatorButton::searchPathOrFile:
            return parts_.toggles.prefSearchFilenameOnly();
        case IndicatorButton::showFiles:
            return parts_.toggles.prefShowFiles();
        case IndicatorButton::showFolders:
            return parts_.toggles.prefShowDirectories();
    }
}
