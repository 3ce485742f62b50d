#include "platform/linux/events/FolderTree.h"

namespace {

std::string joined(const FolderNode* node, bool shown) {
    std::vector<const FolderNode*> chain;
    size_t length = 0;
    const FolderNode* top = node;
    for (; top->parent && !(shown && top->shown); top = top->parent) {
        chain.push_back(top);
        length += top->name.size() + 1;
    }
    std::string path;
    if (shown && top->shown) {
        path.reserve(top->shown->size() + length);
        if (*top->shown != "/" || chain.empty()) path = *top->shown;
    } else if (chain.empty()) {
        return "/";
    } else {
        path.reserve(length);
    }
    for (size_t i = chain.size(); i-- > 0;) path.append(1, '/').append(chain[i]->name);
    return path;
}

}  // namespace

FolderTree::FolderTree() : root_(std::make_unique<FolderNode>()) {}

void FolderTree::clear() {
    while (!root_->children.empty()) forget(root_->children.begin()->second.get());
    forgotten_.clear();
    byKey_.clear();
    root_ = std::make_unique<FolderNode>();
}

FolderNode* FolderTree::find(const std::string& key) const {
    if (key.empty()) return nullptr;
    const auto found = byKey_.find(key);
    return found == byKey_.end() ? nullptr : found->second;
}

FolderNode* FolderTree::child(const FolderNode* parent, std::string_view name) {
    const auto found = parent->children.find(name);
    return found == parent->children.end() ? nullptr : found->second.get();
}

FolderNode* FolderTree::add(FolderNode* parent, std::string_view name) {
    auto node = std::make_unique<FolderNode>();
    node->parent = parent;
    node->name = name;
    FolderNode* const added = node.get();
    if (FolderNode* old = child(parent, name)) forget(old);
    parent->children.emplace(added->name, std::move(node));
    return added;
}

void FolderTree::setKey(FolderNode* node, std::string key) {
    if (const auto found = byKey_.find(node->key);
        !node->key.empty() && found != byKey_.end() && found->second == node)
        byKey_.erase(found);
    node->key = std::move(key);
    if (node->key.empty()) return;
    if (const auto other = byKey_.find(node->key); other != byKey_.end()) {
        FolderNode* const loser = other->second;
        byKey_.erase(other);
        loser->key.clear();
    }
    byKey_[node->key] = node;
}

std::unique_ptr<FolderNode> FolderTree::takeOut(FolderNode* node) {
    const auto found = node->parent->children.find(node->name);
    std::unique_ptr<FolderNode> taken = std::move(found->second);
    node->parent->children.erase(found);
    node->parent = nullptr;
    return taken;
}

bool FolderTree::place(FolderNode* node, FolderNode* parent, std::string_view name) {
    if (node->parent == parent && node->name == name) return true;
    if (!node->parent || isAtOrBelow(parent, node)) return false;
    if (FolderNode* old = child(parent, name)) {
        if (isAtOrBelow(node, old)) return false;
        forget(old);
    }
    std::unique_ptr<FolderNode> taken = takeOut(node);
    taken->name = name;
    taken->parent = parent;
    parent->children.emplace(taken->name, std::move(taken));
    return true;
}

void FolderTree::forget(FolderNode* node) {
    if (!node->parent) return;
    const std::vector<FolderNode*> nodes = subtree(node);
    forgotten_.push_back(takeOut(node));
    // Flat, so that their end does not go as deep as the folders do.
    for (FolderNode* one : nodes) {
        one->forgotten = true;
        if (const auto found = byKey_.find(one->key); found != byKey_.end() && found->second == one)
            byKey_.erase(found);
        for (auto& [name, child] : one->children) {
            child->parent = nullptr;
            forgotten_.push_back(std::move(child));
        }
        one->children.clear();
    }
}

std::vector<FolderTree::Ended> FolderTree::sweep() {
    std::vector<Ended> ended;
    for (auto& node : forgotten_)
        if (!node->key.empty()) ended.push_back({std::move(node->key), node->dead});
    forgotten_.clear();
    return ended;
}

std::string FolderTree::path(const FolderNode* node) {
    return joined(node, false);
}

std::string FolderTree::shownPath(const FolderNode* node) {
    return joined(node, true);
}

bool FolderTree::isAtOrBelow(const FolderNode* node, const FolderNode* ancestor) {
    while (node && node != ancestor) node = node->parent;
    return node != nullptr;
}

std::vector<FolderNode*> FolderTree::subtree(FolderNode* node) {
    std::vector<FolderNode*> nodes{node};
    for (size_t i = 0; i < nodes.size(); i++)
        for (auto& [name, child] : nodes[i]->children) nodes.push_back(child.get());
    return nodes;
}
