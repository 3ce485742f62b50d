#include "platform/linux/events/WatchedTree.h"

#include <algorithm>

#include "util/log.h"

namespace {
constexpr size_t kMostBacklog = 500'000;  // events; more are as good as an overflow
}

WatchedTree::WatchedTree(Options options, WatchBudget& budget)
    : options_(std::move(options)), budget_(budget) {
    for (const FileURL& path : options_.paths) roots_.push_back({path});
}

void WatchedTree::build(std::optional<timespec> since) {
    needsBuild_ = false;
    since_ = since;
    tree_.clear();
    backlog_.clear();
    for (Root& root : roots_) root.node = nullptr;
    watches_.reset();
    watches_ = std::make_unique<WatchSet>(options_.backends, budget_);
    for (Root& root : roots_)
        if (!addRoot(root)) logWarning("File events: no folder '%s'", root.given.c_str());
    since_.reset();
    sweep();
}

bool WatchedTree::read(std::vector<RawEvent>& events, size_t most) {
    events = std::move(backlog_);
    backlog_.clear();
    if (events.size() >= kMostBacklog) events.emplace_back().overflow = true;
    watches_->read(events, most);
    return !events.empty();
}

bool WatchedTree::allows(const FolderNode* parent, std::string_view name) const {
    if (!options_.shouldWatch) return true;
    const FolderNode* child = FolderTree::child(parent, name);
    if (child && std::any_of(roots_.begin(), roots_.end(),
                             [&](const Root& root) { return root.node == child; }))
        return true;
    return options_.shouldWatch(FolderTree::shownPath(parent).append(1, '/').append(name));
}

void WatchedTree::forget(FolderNode* node, bool dead) {
    node->dead = dead;
    tree_.forget(node);
}

void WatchedTree::sweep() {
    for (Root& root : roots_)
        if (root.node && root.node->forgotten) root.node = nullptr;
    for (const FolderTree::Ended& ended : tree_.sweep()) {
        // A folder that was forgotten here and met again there still has the same watch.
        if (tree_.find(ended.key))
            watches_->countOnce(ended.key);
        else
            watches_->drop(ended.key, ended.dead);
    }
}

std::vector<std::string> WatchedTree::takeChangedPaths() {
    return std::exchange(changed_, {});
}
