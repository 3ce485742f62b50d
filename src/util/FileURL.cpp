#include "util/FileURL.h"

namespace {
std::string_view withoutTrailingSlashes(std::string_view path) {
    while (path.size() > 1 && path.back() == '/') path.remove_suffix(1);
    return path;
}
}  // namespace

FileURL FileURL::standardized(std::string_view path) {
    std::string out;
    out.reserve(path.size());
    for (char c : path)
        if (c != '/' || out.empty() || out.back() != '/') out.push_back(c);
    if (out.size() > 1 && out.back() == '/') out.pop_back();
    return FileURL(std::move(out));
}

std::string_view FileURL::lastPathComponent() const {
    const std::string_view path = withoutTrailingSlashes(path_);
    const size_t slash = path.rfind('/');
    if (slash == std::string_view::npos || path.size() == 1) return path;
    return path.substr(slash + 1);
}

std::string_view FileURL::pathExtension() const {
    const std::string_view name = lastPathComponent();
    const size_t dot = name.rfind('.');
    if (dot == std::string_view::npos || dot == 0 || dot + 1 == name.size()) return {};
    return name.substr(dot + 1);
}

FileURL FileURL::deletingLastPathComponent() const {
    std::string_view path = withoutTrailingSlashes(path_);
    const size_t slash = path.rfind('/');
    if (slash == std::string_view::npos) return {};
    return FileURL(std::string(withoutTrailingSlashes(path.substr(0, slash + 1))));
}

FileURL FileURL::appending(std::string_view name) const {
    std::string path;
    path.reserve(path_.size() + 1 + name.size());
    path = path_;
    if (!path.empty() && path.back() != '/') path.push_back('/');
    path.append(name);
    return FileURL(std::move(path));
}

std::vector<std::string_view> FileURL::pathComponents() const {
    std::vector<std::string_view> out;
    const std::string_view path = path_;
    for (size_t at = 0; at < path.size();) {
        size_t end = path.find('/', at);
        if (end == std::string_view::npos) end = path.size();
        if (end > at) out.push_back(path.substr(at, end - at));
        at = end + 1;
    }
    return out;
}

bool FileURL::hasPrefix(const FileURL& prefix) const {
    const auto own = pathComponents(), other = prefix.pathComponents();
    if (other.size() > own.size()) return false;
    for (size_t i = 0; i < other.size(); i++)
        if (own[i] != other[i]) return false;
    return true;
}
