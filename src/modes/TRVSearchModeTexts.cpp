#include "modes/TRVSearchMode.h"
#include "modes/fileRows.h"
#include "shell/registry/shortcutText.h"
#include "util/Unicode.h"

// What Search mode says in the field and in the info bar.

namespace {

std::string withShortcut(const char* text, std::string_view identifier, const char* command) {
    const std::string keys = stringRepresentationFor(identifier);
    return std::string(text) + " (" + keys + (keys.empty() ? "" : " ") + command + ")";
}

}  // namespace

std::string TRVSearchMode::searchFieldPlaceholderText() {
    constexpr auto kEditor = "ToggleProjectEditor";
    const auto project = currentProject();
    if (!project) {
        if (projects_.empty())
            return withShortcut("No project configured", kEditor, "Project Editor");
        if (!hasEnabledProjects())
            return withShortcut("All projects disabled", kEditor, "Project Editor");
        return withShortcut("No project selected", "SwitchToProjectsMode", "Select Project");
    }
    if (project->folders().empty())
        return withShortcut("No folders configured for current project", kEditor, "Project Editor");
    const std::string path =
        project->isVirtualProject() ? textToPath(project->name) : project->name;
    const std::string name(FileURL(path).lastPathComponent());
    return "Search " + displayText(name) + (project->isVirtualProject() && name != "/" ? "/" : "");
}

std::string TRVSearchMode::infoString() {
    const auto project = currentProject();
    if (!project) return "No active project";
    std::string count;
    missingFolders_.clear();
    const auto cache = caches_.currentCache();
    if (cache && !searchString().empty()) {
        cache->performBlockReadOnly([&](const ReadSection& section) {
            for (const auto& folder : project->sorderFoldersAsc())
                if (!cache->existsFsItemWithPath(section, folder->url))
                    missingFolders_.push_back(folder->url);
        });
        count = " [" + std::to_string(visibleMatches_) + "/" + std::to_string(totalMatches_) +
                (missingFolders_.empty() ? "]" : "*]");
    }
    const bool scanning = cache && cache->scanInProgress().value();
    return std::string(scanning ? "Indexing" : "Search") +
           (project->isVirtualProject() ? " directory " : " project ") + nameOfProject(*project) +
           (scanning ? "… " : "") + count;
}

std::string TRVSearchMode::infoTooltip() {
    if (missingFolders_.empty()) return {};
    std::string text = "Missing from cache:";
    for (const FileURL& folder : missingFolders_) text += "\n  • " + displayText(folder.path());
    return text;
}
