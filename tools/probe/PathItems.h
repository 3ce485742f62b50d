#pragma once
#include <map>
#include <string>
#include <string_view>

#include "Fields.h"
#include "index/fs_item.h"

/// Items for paths, in one tree as those of an index: paths share the folders they have in common.
/// Owns them. Threads: one.
class PathItems {
  public:
    /// The item for a request's field.
    fs_item_t* item(const Fields& request, std::string_view name) {
        const FileURL url = request.path(name);
        fs_item_t* item = &root_;
        std::string path;
        for (const std::string_view component : url.pathComponents()) {
            if (component.size() > UINT16_MAX) request.illTyped(name, "a path of shorter names");
            path.append("/").append(component);
            const auto [at, isNew] = items_.try_emplace(path);
            if (isNew) {
                at->second.name = at->first.c_str() + path.size() - component.size();
                at->second.name_length = static_cast<uint16_t>(component.size());
                at->second.parent = item;
            }
            item = &at->second;
        }
        return item;
    }

  private:
    fs_item_t root_{"/", 1, ITEM_DIRECTORY, nullptr, nullptr, 0, 0, nullptr};
    std::map<std::string, fs_item_t> items_;
};
