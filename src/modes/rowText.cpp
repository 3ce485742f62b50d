#include "modes/rowText.h"

#include "util/Unicode.h"

namespace {

void addPosition(std::vector<TextRange>& ranges, size_t position) {
    if (!ranges.empty() && ranges.back().location + ranges.back().length == position)
        ranges.back().length++;
    else
        ranges.push_back({position, 1});
}

/// Shown as it was matched, unit for unit: a mark replaces one unit by one.
std::string shown(const std::u16string& text) {
    return displayText(toUtf8(text));
}

}  // namespace

RowContent makeRowText(std::string_view name, std::string_view folder,
                       const std::vector<uint64_t>& matchedIndexes, bool indexesInFilename) {
    const std::u16string nameText = ruleText(name);
    const std::u16string folderText = ruleText(folder);
    RowContent row;
    row.name = shown(nameText);
    row.path = shown(folderText);
    // In the whole path the name stands behind the folder and a slash; the root is that slash.
    const size_t nameBegin = indexesInFilename ? 0 : folderText.size() + (folder == "/" ? 0 : 1);
    for (const uint64_t index : matchedIndexes) {
        if (index >= nameBegin)
            addPosition(row.nameHighlights, index - nameBegin);
        else if (index < folderText.size())
            addPosition(row.pathHighlights, index);
    }
    return row;
}
