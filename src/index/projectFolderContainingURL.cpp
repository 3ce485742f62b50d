#include "index/projectFolderContainingURL.h"

#include <sys/stat.h>

#include "index/FSEventHandlerArguments.h"
#include "index/checkPathComponents.h"
#include "index/exclusionStatus.h"
#include "platform/FileTypes.h"

namespace {

uint8_t itemTypeOf(const FileURL& url, const FileTypes& types) {
    struct stat status;
    if (lstat(url.c_str(), &status) != 0) return ITEM_FILE;
    const bool isLink = S_ISLNK(status.st_mode);
    if (isLink && stat(url.c_str(), &status) != 0) return ITEM_FILE | ITEM_SYMLINK;
    int type = ITEM_FILE;
    if (S_ISDIR(status.st_mode))
        type = types.isFilePackageAtPath(url) ? ITEM_BUNDLE : ITEM_DIRECTORY;
    return static_cast<uint8_t>(isLink ? type | ITEM_SYMLINK : type);
}

exclusion_status_t statusOf(const FileURL& url, const FileURL& folder, uint8_t type,
                            const MatchingRules& rules) {
    if (url == folder) return exclusionStatus(u"", 0, type, rules);
    RuleSubject subject(folder.path(), url.deletingLastPathComponent().path());
    subject.setName(url.lastPathComponent());
    return exclusionStatus(subject.path(), subject.lastPathComponentOffset(), type, rules);
}

}  // namespace

bool projectFolderTakes(const ProjectFolder& folder, const FileURL& url, uint8_t type,
                        const GlobalRules& global, const FileTypes& types) {
    FSEventHandlerArguments arguments;
    arguments.eventURL = url;
    arguments.global = global;
    arguments.folder = &folder;
    arguments.eventPathType = type & static_cast<uint8_t>(~ITEM_SYMLINK);
    FileURL bundle;
    if (checkPathComponents(arguments, types, bundle) != PathComponents::wellFormed) return false;
    const FolderRules rules = rulesOfFolder(folder, global, RulesFor::containingFolder);
    const exclusion_status_t status = statusOf(url, folder.url, type, rules.rules);
    return status == kStatusIncluded ||
           (status == kStatusNoRule && folder.ruleType == kRuleExclude);
}

std::shared_ptr<const ProjectFolder> projectFolderContainingURL(const Project& project,
                                                                const FileURL& url,
                                                                const FileTypes& types) {
    const GlobalRules global = GlobalRules::fromSettings();
    const uint8_t type = itemTypeOf(url, types);
    for (const auto& folder : project.sorderFoldersDesc())
        if (url.hasPrefix(folder->url) && projectFolderTakes(*folder, url, type, global, types))
            return folder;
    return nullptr;
}
