#pragma once
#include <cstdint>
#include <map>
#include <shared_mutex>
#include <string>
#include <vector>

#include "util/FileURL.h"
#include "util/Relaxed.h"

class FileTypes;
class OVUserDefaults;

/// A locked set of paths, each with its kind: 1 for a file or bundle, 2 for anything else. Under a
/// settings key it is stored at each change.
/// Owner:   Marked Items mode. Threads: any; also inside sections, which its lock comes after.
///
/// What is marked here is the user's, the index is not. It leaves the index for many reasons, of
/// which only one is that the file is gone; so who follows the index calls removePathIfGone and not
/// removeURL, and storeRemovedPaths after a row of them.
class PathCache {
  public:
    enum class Toggled : int32_t { removed = -1, added = 1 };

    /// In memory only.
    explicit PathCache(const FileTypes& fileTypes) : fileTypes_(fileTypes) {}
    /// Reads what is stored under the key, and stores there.
    PathCache(const FileTypes& fileTypes, OVUserDefaults& settings, std::string preferencesKey);

    /// Without the lock.
    uint64_t count() const { return count_; }
    std::vector<FileURL> urls() const;
    /// Those whose kind has a bit in common with the mask.
    std::vector<FileURL> urlsMatchingVisibleItemTypes(uint8_t mask) const;
    bool containsURL(const FileURL& url) const;

    void addURL(const FileURL& url);
    void removeURL(const FileURL& url);
    Toggled addOrRemoveURL(const FileURL& url);
    /// The same for each, stored once.
    void addOrRemoveURLs(const std::vector<FileURL>& urls);
    void setURLs(const std::vector<FileURL>& urls);
    /// The path itself and all below it; whether anything changed.
    bool renameURL(const FileURL& from, const FileURL& to);
    void clear();

    /// Takes the path out if there is no such file. What stays stored until it is stored anew is
    /// harmless: a path of nothing.
    void removePathIfGone(const FileURL& url);
    void storeRemovedPaths();

  private:
    uint8_t kindOf(const FileURL& url) const;
    Toggled toggle(const FileURL& url, uint8_t kind);
    void changed();
    void saveUserDefaults();

    const FileTypes& fileTypes_;
    OVUserDefaults* const settings_ = nullptr;
    const std::string preferencesKey_;
    mutable std::shared_mutex lock_;  // guards what follows
    std::map<FileURL, uint8_t> myURLs_;
    bool unsaved_ = false;
    Relaxed<uint64_t> count_ = 0;
};
