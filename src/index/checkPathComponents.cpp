#include "index/checkPathComponents.h"

#include <sys/stat.h>

#include "index/FSEventHandlerArguments.h"
#include "index/exclusionStatus.h"
#include "index/trace.h"
#include "platform/FileTypes.h"

bool isFilePackage(const FileTypes& types, const FileURL& url) {
    struct stat status;
    return types.isFilePackageAtPath(url) && lstat(url.c_str(), &status) == 0 &&
           S_ISDIR(status.st_mode);
}

void FSEventHandlerArguments::composeRules() {
    const auto [at, isNew] = rulesByFolder.try_emplace(folder);
    if (isNew) at->second = rulesOfFolder(*folder, global, RulesFor::events);
    rules = &at->second;
}

PathComponents checkPathComponents(FSEventHandlerArguments& arguments, const FileTypes& types,
                                   FileURL& bundleURL) {
    const EventId id = arguments.eventId;
    const ProjectFolder& folder = *arguments.folder;
    const std::vector<std::string_view> components = arguments.eventURL.pathComponents();
    const size_t above = folder.url.pathComponents().size();
    const auto depth = static_cast<int64_t>(components.size() - above);
    if (folder.limitSearchDepth && depth - 1 > *folder.limitSearchDepth) {
        logIf(arguments.debug, Info, "%llu         Ignoring event due to maxDepth", id);
        return PathComponents::tooDeep;
    }
    arguments.composeRules();
    arguments.relativePath.reset();
    FileURL url = folder.url;
    for (size_t i = above; i < components.size(); i++) {
        arguments.relativePath.emplace(folder.url.path(), url.path());
        arguments.relativePath->setName(components[i]);
        url = url.appending(components[i]);
        logIf(arguments.debug, Info, "%llu         Checking component of event path: %s", id,
              url.c_str());
        if (components[i].find('.') != std::string_view::npos && isFilePackage(types, url)) {
            logIf(arguments.debug, Info,
                  "%llu         -> Event path points inside bundle. Skipping.", id);
            bundleURL = url;
            return PathComponents::insideBundle;
        }
        const bool isLast = i + 1 == components.size();
        const uint8_t type = isLast ? arguments.eventPathType : uint8_t{ITEM_DIRECTORY};
        if (exclusionStatus(arguments.relativePath->path(),
                            arguments.relativePath->lastPathComponentOffset(), type,
                            arguments.rules->foldersToSkip) == kStatusExcluded) {
            logIf(arguments.debug, Info, "%llu         -> Path has been excluded. Skipping.", id);
            return PathComponents::excluded;
        }
    }
    return PathComponents::wellFormed;
}
