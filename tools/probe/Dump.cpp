#include "Dump.h"

#include <algorithm>

#include "Surrogates.h"
#include "index/Cache.h"

namespace {

json jsonFrom(const fs_item_metadata* metadata) {
    if (!metadata) return nullptr;
    return {{"mtime", metadata->mtime}, {"ctime", metadata->ctime}, {"btime", metadata->btime},
            {"atime", metadata->atime}, {"uid", metadata->uid},     {"gid", metadata->gid},
            {"mode", metadata->mode},   {"size", metadata->size},   {"nlink", metadata->nlink}};
}

}  // namespace

json dumpOf(Cache& cache, const Fields& request) {
    struct Line {
        std::string path;
        json item;
    };
    std::vector<Line> lines;
    const FileURL under = request.find("under") ? request.absolutePath("under") : FileURL("/");
    const bool withMetadata = request.boolean("metadata", false);
    cache.performBlockReadOnly([&](const ReadSection& section) {
        for (const fs_item_t* item : cache.items(section)) {
            const FileURL url = item->parent ? fs_item_url(item) : FileURL("/");
            if (!url.isAtOrBelow(under)) continue;
            json line = {{"path", carriedFromPath(url.path())},
                         {"type", item->type},
                         {"inode", item->inode},
                         {"index", item->index}};
            if (withMetadata) line["metadata"] = jsonFrom(item->metadata);
            lines.push_back({url.path(), std::move(line)});
        }
    });
    std::sort(lines.begin(), lines.end(),
              [](const Line& a, const Line& b) { return a.path < b.path; });
    json items = json::array();
    for (Line& line : lines) items.push_back(std::move(line.item));
    return {{"items", std::move(items)}};
}
