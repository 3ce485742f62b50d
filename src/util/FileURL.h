#pragma once
#include <compare>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

/// The path of a file, as bytes: exactly what the file system has, whatever its encoding. A value.
/// Threads: any. Nothing here touches the disk. Equality is byte for byte.
/// A path is kept as given; standardized() is for what a user or a file wrote.
class FileURL {
  public:
    FileURL() = default;
    explicit FileURL(std::string path) : path_(std::move(path)) {}
    /// One slash where several stand, none at the end (the root keeps its own); dots stay.
    static FileURL standardized(std::string_view path);

    const std::string& path() const { return path_; }
    const char* c_str() const { return path_.c_str(); }
    bool empty() const { return path_.empty(); }
    bool isAbsolute() const { return !path_.empty() && path_[0] == '/'; }

    /// Bytes behind the last slash; "/" for the root, empty for an empty path.
    std::string_view lastPathComponent() const;
    /// Behind the last dot of the last component, without it; empty for ".profile" and "name.".
    std::string_view pathExtension() const;
    /// The folder around it; the root for the root and for what stands directly in it.
    FileURL deletingLastPathComponent() const;
    FileURL appending(std::string_view name) const;
    /// The names between slashes, without the root.
    std::vector<std::string_view> pathComponents() const;
    /// Whether prefix's components are the first ones of this path; an empty list is a prefix.
    bool hasPrefix(const FileURL& prefix) const;
    /// At or below folder.
    bool isAtOrBelow(const FileURL& folder) const { return hasPrefix(folder); }

    friend bool operator==(const FileURL&, const FileURL&) = default;
    friend auto operator<=>(const FileURL&, const FileURL&) = default;

  private:
    std::string path_;
};

template <>
struct std::hash<FileURL> {
    size_t operator()(const FileURL& url) const noexcept {
        return std::hash<std::string>{}(url.path());
    }
};
