#include "index/LivePathFilter.h"

#include <algorithm>

#include "util/FileURL.h"
#include "util/log.h"
#include "util/queues/MainQueue.h"

namespace {

constexpr size_t kMaxPaths = 1024;

/// Whether the path is that of the rule or below it. rule: with a slash at its end.
bool covers(std::string_view rule, std::string_view path) {
    return rule.size() > path.size() ? rule.size() == path.size() + 1 && rule.starts_with(path)
                                     : path.starts_with(rule);
}

void expectNotMainThread() {
    if (MainQueue::isMainThread()) logError("Must not be called on main thread!");
}

}  // namespace

void LivePathFilter::addPath(const FileURL& url, Rule isIncluded) {
    expectNotMainThread();
    {
        const std::lock_guard lock(mutex_);
        // Kept: one more than the limit is accepted.
        if (paths_.size() > kMaxPaths) {
            logWarning("Maximum number of paths for live path filter exceeded");
            return;
        }
        // Kept: the root's key has two slashes, and covers the root alone.
        change(url.path() + "/", isIncluded);
    }
    publishHasRules();
}

void LivePathFilter::change(std::string key, Rule rule) {
    const auto same = std::find_if(paths_.begin(), paths_.end(),
                                   [&](const PathRule& each) { return each.path == key; });
    if (same == paths_.end()) {
        add(std::move(key), rule);
    } else if (same->rule != rule) {
        paths_.erase(same);
        exclusive_ = includesAny();
    }
}

void LivePathFilter::add(std::string key, Rule rule) {
    if (rule == Rule::included) {
        const auto isUseless = [&key](const PathRule& other) {
            const bool isInOneLine = key.starts_with(other.path) || other.path.starts_with(key);
            return (other.rule == Rule::included) == isInOneLine;
        };
        paths_.erase(std::remove_if(paths_.begin(), paths_.end(), isUseless), paths_.end());
        exclusive_ = true;
    }
    const auto place =
        std::find_if(paths_.begin(), paths_.end(), [&](const PathRule& o) { return o.path > key; });
    paths_.insert(place, {std::move(key), rule});
}

void LivePathFilter::reset() {
    expectNotMainThread();
    {
        const std::lock_guard lock(mutex_);
        paths_.clear();
        exclusive_ = false;
    }
    publishHasRules();
}

std::shared_ptr<const LivePathFilter> LivePathFilter::copy() const {
    auto made = std::make_shared<LivePathFilter>();
    const std::lock_guard lock(mutex_);
    made->paths_ = paths_;
    made->hasRules_ = !paths_.empty();
    made->exclusive_ = exclusive_;
    return made;
}

bool LivePathFilter::includesAny() const {
    return std::any_of(paths_.begin(), paths_.end(),
                       [](const PathRule& each) { return each.rule == Rule::included; });
}

void LivePathFilter::publishHasRules() {
    MainQueue::sync([this] {
        const std::lock_guard lock(mutex_);
        hasRules_ = !paths_.empty();
    });
}

bool LivePathFilter::isPathExcluded(const FileURL& path) const {
    if (!hasRules_) return false;
    for (size_t i = paths_.size(); i-- > 0;)
        if (covers(paths_[i].path, path.path())) return paths_[i].rule == Rule::excluded;
    return exclusive_;
}

std::vector<std::string> LivePathFilter::activePaths() const {
    const std::lock_guard lock(mutex_);
    std::vector<std::string> texts;
    for (const PathRule& each : paths_)
        texts.push_back((each.rule == Rule::included ? "[+] " : "[-] ") + each.path);
    return texts;
}
