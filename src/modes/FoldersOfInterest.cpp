#include "modes/FoldersOfInterest.h"

#include "datatypes/Project.h"
#include "index/RuleSubject.h"
#include "index/exclusionStatus.h"
#include "index/fs_item.h"

FoldersOfInterest::FoldersOfInterest(std::shared_ptr<const Project> project)
    : project_(std::move(project)) {
    const GlobalRules global = GlobalRules::fromSettings();
    for (const auto& folder : project_->sorderFoldersDesc())
        rules_.push_back(rulesOfFolder(*folder, global, RulesFor::events));
}

bool FoldersOfInterest::contains(std::string_view path) const {
    const FileURL url{std::string(path)};
    const auto& folders = project_->sorderFoldersDesc();
    for (size_t i = 0; i < folders.size(); i++) {
        const FileURL& folder = folders[i]->url;
        if (folder == url || folder.hasPrefix(url)) return true;
        if (!url.hasPrefix(folder)) continue;
        RuleSubject subject(folder.path(), url.deletingLastPathComponent().path());
        subject.setName(url.lastPathComponent());
        return exclusionStatus(subject.path(), subject.lastPathComponentOffset(), ITEM_DIRECTORY,
                               rules_[i].foldersToSkip) != kStatusExcluded;
    }
    return true;
}
