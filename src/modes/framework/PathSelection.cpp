#include "modes/framework/PathSelection.h"

#include <algorithm>
#include <utility>

PathSelection::PathSelection(const FileURL& path) {
    for (const std::string_view component : path.pathComponents())
        pathComponents_.emplace_back(component);
}

std::optional<FileURL> PathSelection::pathSelection() const {
    if (selectedPathComponent_ > count() + 1) return std::nullopt;
    return urlFromSelectedPathComponents();
}

void PathSelection::setPathSelection(const std::optional<FileURL>& url) {
    selectedPathComponent_ = url ? url->pathComponents().size() + 1 : 0;
}

bool PathSelection::clearPathSelection() {
    return std::exchange(selectedPathComponent_, 0) != 0;
}

void PathSelection::shrinkPathSelection() {
    selectedPathComponent_ = selectedPathComponent_ == 0 ? count() + 1 : selectedPathComponent_ - 1;
}

void PathSelection::extendPathSelection() {
    selectedPathComponent_ = selectedPathComponent_ > count() ? 0 : selectedPathComponent_ + 1;
}

std::optional<FileURL> PathSelection::urlFromSelectedPathComponents() const {
    if (selectedPathComponent_ == 0) return std::nullopt;
    FileURL url("/");
    const uint64_t components = std::min(selectedPathComponent_ - 1, count());
    for (uint64_t i = 0; i < components; i++) url = url.appending(pathComponents_[i]);
    return url;
}
