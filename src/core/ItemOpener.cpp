#include "core/ItemOpener.h"

#include <dirent.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstring>

#include "core/FrontmostApplication.h"
#include "platform/Applications.h"
#include "util/Unicode.h"
#include "util/log.h"
#include "util/settings/OVUserDefaults.h"

namespace {

Error cannotOpen(std::string text) {
    return Error{.domain = "posix", .code = errno, .description = std::move(text)};
}

const std::string& textOf(const Error& error) {
    return error.failureReason.empty() ? error.description : error.failureReason;
}

}  // namespace

Result<pathInfo_t> ItemOpener::pathInfo(const FileURL& url) {
    struct stat status;
    if (lstat(url.c_str(), &status) != 0)
        return cannotOpen(errno == ENOENT
                              ? std::string("Cannot open file: it does not exist")
                              : std::string("Cannot open file: ") + std::strerror(errno));
    pathInfo_t info{.isSymlink = S_ISLNK(status.st_mode)};
    if (info.isSymlink) {
        if (stat(url.c_str(), &status) != 0) return cannotOpen("Cannot open file: broken symlink");
        info.destinationExamined = true;
    }
    info.isFolder = S_ISDIR(status.st_mode);
    if (!info.isFolder) return info;
    if (DIR* const folder = opendir(url.c_str())) {
        info.folderOpened = true;
        closedir(folder);
    }
    return info;
}

std::optional<std::string> ItemOpener::applicationFor(const FileURL& url,
                                                      const pathInfo_t& pathInfo) {
    Applications& applications = parts_.applications;
    if (pathInfo.folderOpened)
        return applications.fileManager(
            OVUserDefaults::sharedInstance().stringForKey("defaultFileManager").value_or(""));
    if (auto application = applications.defaultApplicationForItem(url)) return application;
    return applications.defaultApplicationForDataOf(url);
}

void ItemOpener::openFileInDefaultApplication(const FileURL& url, const pathInfo_t& pathInfo) {
    const auto application = applicationFor(url, pathInfo);
    if (!application) {
        parts_.error("Found no application to open " + displayText(url.lastPathComponent()));
        return;
    }
    const auto opened = parts_.applications.openWithApplication({url}, *application);
    if (!opened) show(opened.error());
}

void ItemOpener::openFileInFrontMostApplication(const FileURL& url) {
    const auto& id = parts_.frontmost.frontmostApplicationBundleId();
    const auto& path = parts_.frontmost.frontmostApplicationBundlePath();
    if (!path || !id) return;
    const auto opened = parts_.applications.openWithApplication({url}, *id);
    if (opened) return;
    logError("Failed to open %s with %s: %s", logText(url.path()).c_str(), logText(*path).c_str(),
             logText(textOf(opened.error())).c_str());
    show(opened.error());
}

void ItemOpener::show(const Error& error) {
    parts_.error(displayText(textOf(error)));
}
