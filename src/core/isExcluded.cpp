#include "core/isExcluded.h"

#include "datatypes/Project.h"
#include "index/FSEventHandlerArguments.h"
#include "index/checkPathComponents.h"
#include "index/exclusionStatus.h"

namespace {

bool leavesOut(const ProjectFolder& folder, const FileURL& url, const FileTypes& types) {
    FSEventHandlerArguments arguments;
    arguments.eventURL = url;
    arguments.global = GlobalRules::fromSettings();
    arguments.folder = &folder;
    arguments.eventPathType = ITEM_FILE;
    FileURL bundle;
    if (checkPathComponents(arguments, types, bundle) == PathComponents::excluded) return true;
    const FolderRules rules = rulesOfFolder(folder, arguments.global, RulesFor::containingFolder);
    RuleSubject subject(folder.url.path(), url.deletingLastPathComponent().path());
    subject.setName(url.lastPathComponent());
    return exclusionStatus(subject.path(), subject.lastPathComponentOffset(), ITEM_FILE,
                           rules.rules) == kStatusExcluded;
}

}  // namespace

bool isExcluded(const FileURL& url, std::span<const std::shared_ptr<const Project>> projects,
                const FileTypes& types) {
    bool isInside = false;
    for (const auto& project : projects) {
        for (const auto& folder : project->folders()) {
            if (url == folder->url || !url.isAtOrBelow(folder->url)) continue;
            if (!leavesOut(*folder, url, types)) return false;
            isInside = true;
        }
    }
    if (isInside) return true;
    ProjectFolder root;
    root.url = FileURL("/");
    return leavesOut(root, url, types);
}
