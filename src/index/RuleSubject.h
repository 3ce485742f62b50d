#pragma once
#include <cstdint>
#include <string>
#include <string_view>

/// What rules look at: an item's path relative to the project folder, "/" in front, as precomposed
/// UTF-16. The part of the folder is made once for all that stands in it.
/// Threads: one at a time.
class RuleSubject {
  public:
    /// folder is the project folder or lies below it.
    RuleSubject(std::string_view projectFolder, std::string_view folder);
    /// The subject becomes that of the folder's entry with this name.
    void setName(std::string_view name);

    std::u16string_view path() const { return text_; }
    size_t lastPathComponentOffset() const { return folderLength_; }

  private:
    std::u16string text_;
    size_t folderLength_;  // with the slash
};

/// An item's path relative to the folder, beginning with "/".
std::string_view relativePath(std::string_view folder, std::string_view path);
