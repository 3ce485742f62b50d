#include "core/isExcluded.h"

#include "datatypes/Project.h"
#include "index/fs_item.h"
#include "index/globalRules.h"
#include "index/projectFolderContainingURL.h"

bool isExcluded(const FileURL& url, std::span<const std::shared_ptr<const Project>> projects,
                const GlobalRules& global, const FileTypes& types) {
    bool isInside = false;
    for (const auto& project : projects) {
        for (const auto& folder : project->folders()) {
            if (url == folder->url || !url.isAtOrBelow(folder->url)) continue;
            if (projectFolderTakes(*folder, url, ITEM_FILE, global, types)) return false;
            isInside = true;
        }
    }
    if (isInside) return true;
    ProjectFolder root;
    root.url = FileURL("/");
    return !projectFolderTakes(root, url, ITEM_FILE, global, types);
}
