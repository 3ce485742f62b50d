#include "index/FolderViews.h"

#include <algorithm>

#include "index/exclusionStatus.h"
#include "index/fs_item.h"

namespace {

exclusion_status_t statusOf(const RuleSubject& subject, uint8_t type, const MatchingRules& rules) {
    return exclusionStatus(subject.path(), subject.lastPathComponentOffset(), type, rules);
}

bool wants(const RuleSubject& subject, uint8_t type, const FolderRules& rules) {
    const exclusion_status_t status = statusOf(subject, type, rules.rules);
    return status == kStatusIncluded || (status == kStatusNoRule && rules.wantUnmatchedItems);
}

}  // namespace

std::vector<FolderView> folderViews(const Project& project, const GlobalRules& global) {
    std::vector<FolderView> views;
    for (const auto& folder : project.sorderFoldersDesc())
        views.push_back({.folder = folder.get(),
                         .scan = rulesOfFolder(*folder, global, RulesFor::scan),
                         .events = rulesOfFolder(*folder, global, RulesFor::events)});
    return views;
}

void DirectoryViews::setEntry(const FileURL& directory, std::string_view name) {
    for (Reader& reader : readers_) {
        if (!reader.subject)
            reader.subject.emplace(reader.view->folder->url.path(), directory.path());
        reader.subject->setName(name);
    }
}

DirectoryViews DirectoryViews::below(const FileURL& entry) const {
    DirectoryViews child(all_);
    child.deepest_ = deepest_;
    for (const Reader& reader : readers_) {
        if (reader.levelsLeft && *reader.levelsLeft < 1) continue;
        if (statusOf(*reader.subject, ITEM_DIRECTORY, reader.view->scan.foldersToSkip) ==
            kStatusExcluded)
            continue;
        child.readers_.emplace_back(*reader.view, reader.levelsLeft);
        if (reader.levelsLeft) --*child.readers_.back().levelsLeft;
    }
    return child.enter(entry);
}

DirectoryViews DirectoryViews::enter(const FileURL& folder) const {
    DirectoryViews entered = *this;
    for (const FolderView& view : all_) {
        if (view.folder->url != folder) continue;
        entered.readers_.emplace_back(view, view.folder->limitSearchDepth);
        entered.deepest_ = &view;
    }
    return entered;
}

bool DirectoryViews::isWanted(uint8_t type) const {
    return std::any_of(readers_.begin(), readers_.end(), [&](const Reader& reader) {
        return wants(*reader.subject, type, reader.view->scan);
    });
}

bool DirectoryViews::isWantedByEvents(uint8_t type) const {
    for (const Reader& reader : readers_) {
        if (reader.view != deepest_) continue;
        // Events on a package are not asked for the folders to skip.
        if (type != ITEM_BUNDLE &&
            statusOf(*reader.subject, type, reader.view->events.foldersToSkip) == kStatusExcluded)
            return false;
        return wants(*reader.subject, type, reader.view->events);
    }
    return false;
}
