#pragma once
#include <cstdint>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "datatypes/ProjectFolder.h"

/// What the user searches: a named set of folders with their rules, and a few preferences. A copy
/// is cheap and shares the folders, which never change: to edit one, put another in its place.
/// Owner:   Search mode's list; shared while a scan reads it. Threads: changed on the main thread
///          before it is shared; read on any.
class Project {
  public:
    using Folders = std::vector<std::shared_ptr<const ProjectFolder>>;

    Project() = default;
    explicit Project(const nlohmann::json& dictionary);
    nlohmann::json dictionaryRepresentation() const;

    /// A folder that is there already is not added again.
    void addFolder(std::shared_ptr<const ProjectFolder> folder);
    void removeFolder(const ProjectFolder* folder);
    const Folders& folders() const { return folders_; }
    /// Ascending by path; descending, a nested folder comes before the one around it. What has no
    /// absolute path is kept, but is in neither.
    const Folders& sorderFoldersAsc() const { return sorderFoldersAsc_; }
    const Folders& sorderFoldersDesc() const { return sorderFoldersDesc_; }
    /// Of a folder that is to be searched at once: named by its path, never stored.
    bool isVirtualProject() const { return !uuid.empty() && uuid.front() == '/'; }

    std::string name;
    std::string uuid;  // of a virtual project: a path
    bool enabled = false;
    bool matchFilenameOnly = false;
    uint8_t visibleItemType = 3;  // value 1 files, value 2 folders; 0 would show nothing
    bool ignoreDiacritics = false;
    nlohmann::json actions = nlohmann::json::array();  // stored dictionaries
    uint64_t lastEventStreamEventId = ~uint64_t{0};    // where to resume, in this run only

  private:
    void sortFolders();

    Folders folders_, sorderFoldersAsc_, sorderFoldersDesc_;
    dictionary::Original original_;
};
