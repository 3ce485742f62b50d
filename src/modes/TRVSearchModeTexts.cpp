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

void TRVSearchMode::noteMissingFolders(const ReadSection& section, Cache& cache) {
    std::vector<FileURL> missing;
    if (const auto project = currentProject())
        for (const auto& folder : project->sorderFoldersAsc())
            if (!cache.existsFsItemWithPath(section, folder->url)) missing.push_back(folder->url);
    std::lock_guard lock(missingFoldersMutex_);
    missingFolders_ = std::move(missing);
}

// The folders that the last search missed: to ask the index here would have the main thread wait
// for those who change it.
std::string TRVSearchMode::infoString() {
    const auto project = currentProject();
    if (!project) return "No active project";
    const auto cache = caches_.currentCache();
    const bool scanning = cache && cache->scanInProgress().value();
    std::string count;
    std::lock_guard lock(missingFoldersMutex_);
    if (searchString().empty())
        missingFolders_.clear();
    else
        count = " [" + std::to_string(visibleMatches_) + "/" + std::to_string(totalMatches_) +
                (missingFolders_.empty() ? "]" : "*]");
    return std::string(scanning ? "Indexing" : "Search") +
           (project->isVirtualProject() ? " directory " : " project ") + nameOfProject(*project) +
           (scanning ? "… " : "") + count;
}

std::string TRVSearchMode::infoTooltip() {
    std::lock_guard lock(missingFoldersMutex_);
    if (missingFolders_.empty()) return {};
    std::string text = "Missing from cache:";
    for (const FileURL& folder : missingFolders_) text += "\n  • " + displayText(folder.path());
    return text;
}
