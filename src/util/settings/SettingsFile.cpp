#include "util/settings/SettingsFile.h"

#include <errno.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>

#include "util/FileIO.h"
#include "util/log.h"
#include "util/settings/SettingsGate.h"

namespace {

using nlohmann::json;

constexpr int kMaxTries = 100;

/// Looked at before the text is parsed, which takes memory for each level.
bool isTooDeep(std::string_view text) {
    int depth = 0;
    bool inString = false;
    for (size_t i = 0; i < text.size(); i++) {
        const char c = text[i];
        if (inString) {
            if (c == '\\')
                i++;
            else if (c == '"')
                inString = false;
        } else if (c == '"') {
            inString = true;
        } else if (c == '[' || c == '{') {
            if (++depth > kMaxSettingsDepth) return true;
        } else if (c == ']' || c == '}') {
            depth--;
        }
    }
    return false;
}

std::optional<json> parsed(const std::string& text) {
    if (isTooDeep(text)) return std::nullopt;
    json object = json::parse(text, nullptr, false);
    if (!object.is_object()) return std::nullopt;
    return object;
}

/// As rename, but a name that is taken stays as it is, with EEXIST.
bool renameToNew(const FileURL& from, const FileURL& to) {
    if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return true;
    if (errno != EINVAL) return false;
    // This disk does not know the flag (network file systems).
    if (access(to.c_str(), F_OK) == 0) {
        errno = EEXIST;
        return false;
    }
    return rename(from.c_str(), to.c_str()) == 0;
}

std::string timeNow() {
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    localtime_r(&now, &parts);
    char text[32];
    std::strftime(text, sizeof text, "%Y%m%d-%H%M%S", &parts);
    return text;
}

/// A settings folder that is shared between machines often has a link in the file's place: the
/// file behind it is the one to replace.
FileURL behindLinks(const FileURL& url) {
    const std::unique_ptr<char, void (*)(void*)> path(realpath(url.c_str(), nullptr), std::free);
    return path ? FileURL(path.get()) : url;
}

}  // namespace

json SettingsFile::read() {
    url_ = behindLinks(url_);
    removeStaleReplacements(url_);
    const auto content = readFile(url_, kMaxBytes);
    if (content) {
        judge(content.value());
        if (auto object = parsed(content.value().bytes)) return *std::move(object);
        return recover();
    }
    const int code = content.error().code;
    if (code == EFBIG) return recover();
    if (code != ENOENT) {
        writes_ = false;
        logWarning("Settings file '%s' cannot be read, changes will not be kept: %s", url_.c_str(),
                   content.error().failureReason.c_str());
    }
    return json::object();
}

json SettingsFile::recover() {
    if (!writes_) return json::object();  // another user's
    std::optional<json> object;
    const auto content = readFile(backup(), kMaxBytes);
    if (content) object = parsed(content.value().bytes);
    if (!setAside(object.has_value())) {
        writes_ = false;
        return json::object();
    }
    if (!object) return json::object();
    judge(content.value());
    logWarning("The settings before the last change count: '%s'", backup().c_str());
    if (writes_) (void)replaceFile(url_, content.value().bytes, 0600 | rightsOfOthers_);
    return *std::move(object);
}

/// With keepName under a second name, so that something else can take the first in one step.
bool SettingsFile::setAside(bool keepName) {
    const std::string name = url_.path() + ".corrupt-" + timeNow();
    for (int i = 1; i < kMaxTries; i++) {
        const FileURL aside(i == 1 ? name : name + "-" + std::to_string(i));
        if ((keepName && link(url_.c_str(), aside.c_str()) == 0) || renameToNew(url_, aside)) {
            logWarning("Settings file '%s' cannot be understood, it is now '%s'", url_.c_str(),
                       aside.c_str());
            return true;
        }
        if (errno != EEXIST) break;
    }
    logWarning("Settings file '%s' cannot be understood, changes will not be kept", url_.c_str());
    return false;
}

void SettingsFile::judge(const FileContent& content) {
    constexpr mode_t kWrittenByOthers = S_IWGRP | S_IWOTH;
    if (content.owner != geteuid()) {
        writes_ = trusted_ = false;
        logWarning(
            "Settings file '%s' belongs to another user: its actions are disabled, changes "
            "will not be kept",
            url_.c_str());
    } else if (content.mode & kWrittenByOthers) {
        trusted_ = false;
        rightsOfOthers_ = content.mode & 066;
        logWarning("Settings file '%s' can be written by others: its actions are disabled",
                   url_.c_str());
    }
}

bool SettingsFile::write(const json& object) {
    if (!writes_) return true;
    const std::string bytes = object.dump(2, ' ', false, json::error_handler_t::replace) + "\n";
    auto written = makePrivateFolder(folder_);
    if (written && bytes.size() > kMaxBytes)
        written = posixError("Failed to write '" + url_.path() + "'", EFBIG);
    if (written) written = replaceFile(url_, bytes, 0600 | rightsOfOthers_, backup());
    if (!written && !complained_)
        logWarning("Settings cannot be saved: %s: %s", written.error().description.c_str(),
                   written.error().failureReason.c_str());
    complained_ = !written;
    return bool{written};
}
