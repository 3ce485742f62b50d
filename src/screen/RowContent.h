#pragma once
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "screen/Geometry.h"
#include "util/Picture.h"

/// A line below name and path.
struct RowLine {
    std::string text = {};
    std::vector<TextRange> highlights = {};
    friend bool operator==(const RowLine&, const RowLine&) = default;
};

/// What one row of the result table shows. Texts are UTF-8 that can be shown as they are (control
/// and direction characters are visible marks); ranges count UTF-16 units of their text.
struct RowContent {
    enum class Source { none, copy, move };  // what a copy or move that is yet to come begins with
    std::string iconName = {};  // freedesktop icon name, such as "folder" or "image-png"
    std::string name = {};      // first line
    std::vector<TextRange> nameHighlights = {};
    size_t nameSuffix = 0;  // so many units at the name's end are a remark on it, such as its age
    std::string path = {};  // second line: the folder
    std::vector<TextRange> pathHighlights = {};
    std::vector<RowLine> attributes = {};
    std::optional<TextRange> pathSelection = {};    // it counts instead of the name, which is dim
    std::shared_ptr<const Picture> thumbnail = {};  // instead of the icon
    bool isLink = false;
    std::string linkPath = {};  // of a link: its path as bytes, to find out where it leads
    bool isMarked = false;
    Source source = Source::none;
};
