#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "index/NameMask.h"
#include "util/FileURL.h"

/// The names in one folder as they were read, in the order of a reader: without regard to case,
/// equal ones by their bytes. Prepared for being searched at each key stroke.
/// Owner:   shared by the listings made from it. Threads: any; nothing changes after construction.
/// Units:   positions in that order; texts in UTF-16, precomposed.
class BrowserFolder {
  public:
    enum class Diacritics { kept, removed };  // in the texts, not in the names and their order

    BrowserFolder(FileURL url, std::vector<std::string> names, Diacritics diacritics);

    const FileURL& url() const { return url_; }
    Diacritics diacritics() const { return diacritics_; }
    size_t count() const { return entries_.size(); }
    std::string_view name(size_t at) const { return names_[entries_[at].name]; }
    FileURL urlOf(size_t at) const { return url_.appending(name(at)); }
    /// What search terms are matched with.
    std::u16string_view text(size_t at) const {
        return std::u16string_view(texts_).substr(entries_[at].text, entries_[at].length);
    }
    /// Of the text's letters.
    NameMask mask(size_t at) const { return entries_[at].mask; }
    /// Where the name stands, or would.
    size_t placeOf(std::string_view name) const;
    /// Nothing for a name that is not there.
    std::optional<size_t> indexOf(std::string_view name) const;

  private:
    struct Entry {
        uint32_t name, text, length;
        NameMask mask;
    };

    const FileURL url_;
    const Diacritics diacritics_;
    const std::vector<std::string> names_;  // as read
    std::vector<Entry> entries_;            // in the order of a reader
    std::u16string texts_;                  // one behind the other
};
