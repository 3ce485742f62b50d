#pragma once
#include <algorithm>
#include <deque>
#include <map>
#include <string>
#include <vector>

#include "index/fs_item.h"
#include "modes/framework/FileMatcher.h"
#include "modes/framework/MatchingItem.h"
#include "searchmodes/RankedItem.h"

/// Puts files of no index into the order that the metadata queries of a search ask for; where these
/// do not tell, into that of Search mode.
/// Owner:   one search. Threads: one.
class FileSorter {
  public:
    /// Null, or without an order of its own: sorts() is false, and there is nothing to add.
    explicit FileSorter(const MetadataEngine* engine);

    bool sorts() const { return sorts_; }
    void add(const FileURL& url, const MatchingFileSystemItem& item);
    /// The places of the added ones, the first row first.
    std::vector<size_t> order() const;

  private:
    fs_item_t* folder(const FileURL& url);
    fs_item_t* makeRecord(std::string_view name, fs_item_t* parent);

    const RowOrder order_;
    const bool sorts_;
    std::deque<std::string> names_;
    std::deque<fs_item_t> records_;
    std::deque<fs_item_metadata> metadata_;
    std::map<FileURL, fs_item_t*> folders_;
    std::vector<RankedItem> items_;
};

/// The rows of a mode: in the order that the terms ask for, else the best first.
template <class Item>
void sortFileItems(std::vector<std::shared_ptr<Item>>& items, const FileMatcher& matcher) {
    FileSorter sorter(matcher.sortOrder());
    if (!sorter.sorts()) {
        std::stable_sort(items.begin(), items.end(), [](const auto& a, const auto& b) {
            return FileMatcher::precedes(*a, a->url, *b, b->url);
        });
        return;
    }
    for (const auto& item : items) sorter.add(item->url, *item);
    std::vector<std::shared_ptr<Item>> sorted;
    for (const size_t place : sorter.order()) sorted.push_back(std::move(items[place]));
    items = std::move(sorted);
}
