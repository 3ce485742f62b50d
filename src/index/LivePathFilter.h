#pragma once
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "index/ItemPathFilter.h"
#include "util/Relaxed.h"

/// A passing narrowing of the search to parts of the tree: only below these folders, or not below
/// those. The index knows nothing of it. The longest rule that covers a path decides.
/// Owner:   each mode that supports paths has one.
/// Threads: addPath and reset on any but the main thread; hasRules, activePaths and copy on any.
///          What ranking asks takes no lock: it asks a copy.
/// Units:   bytes of paths, of any length.
/// Fails:   by a line in the log.
class LivePathFilter final : public ItemPathFilter {
  public:
    enum class Rule : bool { excluded = false, included = true };

    /// The opposite of a rule that stands takes it away.
    void addPath(const FileURL& url, Rule isIncluded);
    void reset();

    /// For one ranking, whatever happens to the rules meanwhile.
    std::shared_ptr<const LivePathFilter> copy() const;

    bool hasRules() const override { return hasRules_; }
    bool isPathExcluded(const FileURL& path) const override;
    /// Some rule includes a path: what no rule covers is hidden.
    bool exclusive() const { return exclusive_; }
    /// "[+] /included/" and "[-] /excluded/", in the order of the paths.
    std::vector<std::string> activePaths() const;

  private:
    struct PathRule {
        std::string path;  // with a slash at its end
        Rule rule;
    };

    void change(std::string key, Rule rule);
    void add(std::string key, Rule rule);
    bool includesAny() const;
    void publishHasRules();

    mutable std::mutex mutex_;     // between the threads that change the rules and activePaths
    std::vector<PathRule> paths_;  // ascending: a folder before what is below it
    Relaxed<bool> hasRules_{false};
    bool exclusive_ = false;
};
