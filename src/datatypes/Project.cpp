#include "datatypes/Project.h"

#include <algorithm>
#include <iterator>

Project::Project(const nlohmann::json& dictionary)
    : name(dictionary::text(dictionary, "name").value_or("")),
      uuid(dictionary::text(dictionary, "uuid").value_or("")),
      enabled(dictionary::flag(dictionary, "enabled")),
      matchFilenameOnly(dictionary::flag(dictionary, "matchFilenameOnly")),
      visibleItemType(dictionary::byte(dictionary, "visibleItemType", 3)),
      ignoreDiacritics(dictionary::flag(dictionary, "ignoreDiacritics")),
      original_(dictionary::original(dictionary)) {
    const auto stored = dictionary::array(dictionary, "actions");
    actions = nlohmann::json::array_t(stored.begin(), stored.end());
    for (const nlohmann::json& folder : dictionary::array(dictionary, "folders"))
        if (folder.is_object()) folders_.push_back(std::make_shared<ProjectFolder>(folder));
    sortFolders();
}

nlohmann::json Project::dictionaryRepresentation() const {
    nlohmann::json out = dictionary::copyOf(original_);
    out["name"] = name;
    out["uuid"] = uuid;
    out["enabled"] = enabled;
    out["matchFilenameOnly"] = matchFilenameOnly;
    out["visibleItemType"] = visibleItemType;
    out["ignoreDiacritics"] = ignoreDiacritics;
    out["actions"] = actions;
    nlohmann::json folders = nlohmann::json::array();
    for (const auto& folder : folders_) folders.push_back(folder->dictionaryRepresentation());
    out["folders"] = std::move(folders);
    return out;
}

void Project::addFolder(std::shared_ptr<const ProjectFolder> folder) {
    if (std::find(folders_.begin(), folders_.end(), folder) == folders_.end())
        folders_.push_back(std::move(folder));
    sortFolders();
}

void Project::removeFolder(const ProjectFolder* folder) {
    std::erase_if(folders_, [folder](const auto& own) { return own.get() == folder; });
    sortFolders();
}

void Project::sortFolders() {
    sorderFoldersAsc_.clear();
    std::copy_if(folders_.begin(), folders_.end(), std::back_inserter(sorderFoldersAsc_),
                 [](const auto& folder) { return folder->url.isAbsolute(); });
    std::stable_sort(sorderFoldersAsc_.begin(), sorderFoldersAsc_.end(),
                     [](const auto& a, const auto& b) { return a->url < b->url; });
    sorderFoldersDesc_.assign(sorderFoldersAsc_.rbegin(), sorderFoldersAsc_.rend());
}
