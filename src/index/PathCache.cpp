#include "index/PathCache.h"

#include <sys/stat.h>

#include <mutex>
#include <nlohmann/json.hpp>

#include "index/DirectoryOnDisk.h"
#include "platform/FileTypes.h"
#include "util/Unicode.h"
#include "util/settings/OVUserDefaults.h"
#include "util/withPrefixReplaced.h"

namespace {

constexpr uint8_t kFileKind = 1;
constexpr uint8_t kOtherKind = 2;

/// A mark whose number is none is still a mark.
uint8_t storedKind(const nlohmann::json& kind) {
    return kind.is_number_integer() ? kind.get<uint8_t>() : kFileKind;
}

}  // namespace

PathCache::PathCache(const FileTypes& fileTypes, OVUserDefaults& settings,
                     std::string preferencesKey)
    : fileTypes_(fileTypes), settings_(&settings), preferencesKey_(std::move(preferencesKey)) {
    const nlohmann::json stored = settings.dictionaryForKey(preferencesKey_);
    for (const auto& [path, kind] : stored.items())
        myURLs_[FileURL::standardized(textToPath(path))] = storedKind(kind);
    count_ = myURLs_.size();
}

std::vector<FileURL> PathCache::urls() const {
    std::shared_lock lock(lock_);
    std::vector<FileURL> out;
    for (const auto& [url, kind] : myURLs_) out.push_back(url);
    return out;
}

std::vector<FileURL> PathCache::urlsMatchingVisibleItemTypes(uint8_t mask) const {
    std::shared_lock lock(lock_);
    std::vector<FileURL> out;
    for (const auto& [url, kind] : myURLs_)
        if (kind & mask) out.push_back(url);
    return out;
}

bool PathCache::containsURL(const FileURL& url) const {
    std::shared_lock lock(lock_);
    return myURLs_.contains(url);
}

void PathCache::addURL(const FileURL& url) {
    const uint8_t kind = kindOf(url);  // a slow disk holds nobody else up
    std::lock_guard lock(lock_);
    myURLs_[url] = kind;
    changed();
}

void PathCache::removeURL(const FileURL& url) {
    std::lock_guard lock(lock_);
    if (myURLs_.erase(url)) changed();
}

PathCache::Toggled PathCache::addOrRemoveURL(const FileURL& url) {
    const uint8_t kind = kindOf(url);
    std::lock_guard lock(lock_);
    const Toggled toggled = toggle(url, kind);
    changed();
    return toggled;
}

void PathCache::addOrRemoveURLs(const std::vector<FileURL>& urls) {
    std::vector<uint8_t> kinds;
    for (const FileURL& url : urls) kinds.push_back(kindOf(url));
    std::lock_guard lock(lock_);
    for (size_t i = 0; i < urls.size(); i++) toggle(urls[i], kinds[i]);
    changed();
}

PathCache::Toggled PathCache::toggle(const FileURL& url, uint8_t kind) {
    if (myURLs_.erase(url) > 0) return Toggled::removed;
    myURLs_[url] = kind;
    return Toggled::added;
}

void PathCache::setURLs(const std::vector<FileURL>& urls) {
    std::map<FileURL, uint8_t> fresh;
    for (const FileURL& url : urls) fresh[url] = kindOf(url);
    std::lock_guard lock(lock_);
    myURLs_ = std::move(fresh);
    changed();
}

bool PathCache::renameURL(const FileURL& from, const FileURL& to) {
    const std::string below = from.path() + "/";
    std::lock_guard lock(lock_);
    std::map<FileURL, uint8_t> renamed;
    bool hit = false;
    for (const auto& [url, kind] : myURLs_) {
        if (url == from || url.path().starts_with(below)) {
            renamed[withPrefixReplaced(url, from, to)] = kind;
            hit = true;
        } else {
            renamed.try_emplace(url, kind);  // what was moved over it has its own kind
        }
    }
    if (!hit) return false;
    myURLs_ = std::move(renamed);
    changed();
    return true;
}

void PathCache::clear() {
    std::lock_guard lock(lock_);
    myURLs_.clear();
    changed();
}

void PathCache::removePathIfGone(const FileURL& url) {
    if (count_ == 0 || !containsURL(url) || !isGone(url)) return;
    std::lock_guard lock(lock_);
    if (!myURLs_.erase(url)) return;
    count_ = myURLs_.size();
    unsaved_ = true;
}

void PathCache::storeRemovedPaths() {
    std::lock_guard lock(lock_);
    if (unsaved_) saveUserDefaults();
}

uint8_t PathCache::kindOf(const FileURL& url) const {
    struct stat info;
    if (lstat(url.c_str(), &info) != 0) return kFileKind;
    // Kept: a link is something else, also one to a file.
    if (S_ISLNK(info.st_mode)) return kOtherKind;
    if (!S_ISDIR(info.st_mode)) return kFileKind;
    return fileTypes_.isFilePackageAtPath(url) ? kFileKind : kOtherKind;
}

void PathCache::changed() {
    count_ = myURLs_.size();
    saveUserDefaults();
}

void PathCache::saveUserDefaults() {
    unsaved_ = false;
    if (!settings_) return;
    nlohmann::json stored = nlohmann::json::object();
    for (const auto& [url, kind] : myURLs_) stored[pathToText(url.path())] = kind;
    settings_->setObject(std::move(stored), preferencesKey_);
}
