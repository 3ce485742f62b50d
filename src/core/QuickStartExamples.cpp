#include "core/QuickStartExamples.h"

#include <algorithm>
#include <array>
#include <optional>

#include "index/Cache.h"
#include "util/Unicode.h"

namespace {

constexpr size_t kMostLookedAt = 200'000;  // items: the page must not wait for more
constexpr size_t kShortestName = 9, kLongestName = 40;

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

/// The words of a name before its extension; nothing for one with anything but letters, blanks,
/// hyphens and underscores.
std::vector<std::string> wordsOf(std::string_view name) {
    std::vector<std::string> words(1);
    for (const char c : name.substr(0, name.rfind('.'))) {
        if (isLetter(c))
            words.back() += static_cast<char>(c | 0x20);
        else if (c != ' ' && c != '-' && c != '_')
            return {};
        else if (!words.back().empty())
            words.emplace_back();
    }
    if (words.back().empty()) words.pop_back();
    return words;
}

std::string beginnings(const std::vector<std::string>& words) {
    std::string query;
    for (size_t i = 0; i < std::min<size_t>(words.size(), 3); i++) query += words[i].substr(0, 2);
    return query;
}

struct Found {
    std::optional<std::string> twoWords, otherTwoWords, folder;

    bool isComplete() const { return twoWords && otherTwoWords && folder; }
    void look(const fs_item_t& item) {
        const std::string_view name = item.nameView();
        if (name.size() < 4 || name.size() > kLongestName) return;
        const auto words = wordsOf(name);
        const bool isFolder = (item.type & ITEM_DIRECTORY) != 0;
        // What only leads to the user's folders stands alone in the index.
        const bool hasSiblings = item.parent && item.parent->dircontent->count > 1;
        if (isFolder && !folder && words.size() == 1 && hasSiblings) folder = name;
        if (isFolder || words.size() < 2 || name.size() < kShortestName) return;
        if (words[0].size() < 3 || words[1].size() < 3) return;
        if (!twoWords)
            twoWords = name;
        else if (!otherTwoWords && wordsOf(*twoWords)[0] != words[0])
            otherTwoWords = name;
    }
};

}  // namespace

std::vector<QuickStartContent::Try> quickStartExamples(Cache& cache) {
    Found found;
    cache.performBlockReadOnly([&](const ReadSection& section) {
        const uint64_t count = std::min<uint64_t>(cache.count(), kMostLookedAt);
        cache.performBlockWithItemsInRange(section, {0, count}, [&](fs_item_t* item) {
            if (item && item->parent) found.look(*item);
            return !found.isComplete();
        });
    });
    std::vector<QuickStartContent::Try> tries;
    if (found.twoWords)
        tries.push_back({beginnings(wordsOf(*found.twoWords)),
                         "A few letters are enough: finds “" + displayText(*found.twoWords) + "”"});
    if (const auto& name = found.otherTwoWords ? found.otherTwoWords : found.twoWords) {
        const auto words = wordsOf(*name);
        tries.push_back({words[1].substr(0, 4) + " " + words[0].substr(0, 4),
                         "Words in any order: finds “" + displayText(*name) + "”"});
    }
    if (found.folder)
        tries.push_back({wordsOf(*found.folder)[0],
                         "Folders too: “" + displayText(*found.folder) + "”, Return opens it"});
    return tries;
}
