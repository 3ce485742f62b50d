#include "modes/BrowserFolder.h"

#include <algorithm>
#include <span>

#include "util/Unicode.h"

namespace {

bool isAscii(std::string_view bytes) {
    return std::all_of(bytes.begin(), bytes.end(), [](char c) { return !(c & 0x80); });
}

/// What names are ordered by.
std::u16string keyOf(std::string_view name) {
    return lowerCasedUnits(ruleText(name));
}

void appendKey(std::u16string& keys, std::string_view name) {
    if (!isAscii(name)) {
        keys += keyOf(name);
        return;
    }
    for (const char c : name)
        keys.push_back(static_cast<char16_t>(c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c));
}

void appendText(std::u16string& texts, std::string_view name,
                BrowserFolder::Diacritics diacritics) {
    const bool removed = diacritics == BrowserFolder::Diacritics::removed;
    // Two of ASCII's signs count as diacritics.
    if (isAscii(name) && !(removed && name.find_first_of("^`") != std::string_view::npos)) {
        for (const char c : name) texts.push_back(static_cast<char16_t>(c));
        return;
    }
    const std::u16string text = ruleText(name);
    texts += removed ? stringByRemovingDiacritics(text) : text;
}

/// Sorts names by four units of their keys at a time: most of a hundred thousand names begin like
/// their neighbours, and whole words compare faster than texts.
class NameSorter {
  public:
    explicit NameSorter(const std::vector<std::string>& names) : names_(names) {
        begins_.reserve(names.size() + 1);
        places_.reserve(names.size());
        for (uint32_t i = 0; i < names.size(); i++) {
            begins_.push_back(static_cast<uint32_t>(keys_.size()));
            places_.push_back({0, i});
            appendKey(keys_, names[i]);
        }
        begins_.push_back(static_cast<uint32_t>(keys_.size()));
    }
    std::vector<uint32_t> sorted() {
        sort(places_, 0);
        std::vector<uint32_t> order;
        order.reserve(places_.size());
        for (const Place& place : places_) order.push_back(place.name);
        return order;
    }

  private:
    struct Place {
        uint64_t units;
        uint32_t name;
    };
    static constexpr size_t kUnits = 4;

    /// A name that is over has zeros there, which no name contains.
    uint64_t unitsAt(uint32_t name, size_t depth) const {
        const size_t begin = begins_[name] + depth, end = begins_[name + 1];
        uint64_t units = 0;
        for (size_t i = 0; i < kUnits; i++)
            units = units << 16 | (begin + i < end ? keys_[begin + i] : u'\0');
        return units;
    }
    void sort(std::span<Place> places, size_t depth) {
        for (Place& place : places) place.units = unitsAt(place.name, depth);
        std::sort(places.begin(), places.end(),
                  [](const Place& a, const Place& b) { return a.units < b.units; });
        for (size_t first = 0; first < places.size();) {
            const uint64_t units = places[first].units;
            size_t last = first + 1;
            while (last < places.size() && places[last].units == units) last++;
            const auto same = places.subspan(first, last - first);
            if (same.size() > 1 && (units & 0xFFFF) != 0)
                sort(same, depth + kUnits);
            else if (same.size() > 1)
                std::sort(same.begin(), same.end(), [this](const Place& a, const Place& b) {
                    return names_[a.name] < names_[b.name];
                });
            first = last;
        }
    }

    const std::vector<std::string>& names_;
    std::u16string keys_;
    std::vector<uint32_t> begins_;
    std::vector<Place> places_;
};

}  // namespace

BrowserFolder::BrowserFolder(FileURL url, std::vector<std::string> names, Diacritics diacritics)
    : url_(std::move(url)), diacritics_(diacritics), names_(std::move(names)) {
    entries_.reserve(names_.size());
    for (const uint32_t name : NameSorter(names_).sorted()) {
        const size_t begin = texts_.size();
        appendText(texts_, names_[name], diacritics);
        entries_.push_back({.name = name,
                            .text = static_cast<uint32_t>(begin),
                            .length = static_cast<uint32_t>(texts_.size() - begin),
                            .mask = presenceOfName(names_[name])});
    }
}

size_t BrowserFolder::placeOf(std::string_view name) const {
    const std::u16string key = keyOf(name);
    const auto found = std::lower_bound(entries_.begin(), entries_.end(), name,
                                        [&](const Entry& entry, std::string_view wanted) {
                                            const std::string& own = names_[entry.name];
                                            const std::u16string ownKey = keyOf(own);
                                            return ownKey != key ? ownKey < key : own < wanted;
                                        });
    return static_cast<size_t>(found - entries_.begin());
}

std::optional<size_t> BrowserFolder::indexOf(std::string_view name) const {
    const size_t at = placeOf(name);
    return at < count() && this->name(at) == name ? std::optional(at) : std::nullopt;
}
