#include "modes/framework/FileSorter.h"

#include <algorithm>

#include "searchmodes/RankRequest.h"

FileSorter::FileSorter(const MetadataEngine* engine)
    : order_(engine), sorts_(engine && engine->hasSortOrder()) {}

fs_item_t* FileSorter::makeRecord(std::string_view name, fs_item_t* parent) {
    const std::string& own = names_.emplace_back(name);
    return &records_.emplace_back(fs_item_t{.name = own.c_str(),
                                            .name_length = static_cast<uint16_t>(own.size()),
                                            .type = ITEM_DIRECTORY,
                                            .dircontent = nullptr,
                                            .parent = parent,
                                            .index = 0,
                                            .inode = 0,
                                            .metadata = nullptr});
}

fs_item_t* FileSorter::folder(const FileURL& url) {
    const auto found = folders_.find(url);
    if (found != folders_.end()) return found->second;
    fs_item_t* const parent = url.path() == "/" ? nullptr : folder(url.deletingLastPathComponent());
    return folders_[url] = makeRecord(url.lastPathComponent(), parent);
}

void FileSorter::add(const FileURL& url, const MatchingFileSystemItem& item) {
    fs_item_t* const record =
        makeRecord(url.lastPathComponent(), folder(url.deletingLastPathComponent()));
    record->index = items_.size();
    if (item.metadata) record->metadata = &metadata_.emplace_back(*item.metadata);
    uint64_t criterions = 0;
    for (const uint64_t criterion : item.matching_metadata_criterions.items())
        criterions |= criterion;
    items_.push_back({.item = record,
                      .score = item.score,
                      .depth = fs_item_depth(record),
                      .criterions = static_cast<uint16_t>(criterions)});
}

std::vector<size_t> FileSorter::order() const {
    std::vector<RankedItem> sorted = items_;
    std::stable_sort(sorted.begin(), sorted.end(), order_);
    std::vector<size_t> places;
    places.reserve(sorted.size());
    for (const RankedItem& each : sorted) places.push_back(each.item->index);
    return places;
}
