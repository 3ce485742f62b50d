#include "modes/fileRows.h"

#include "datatypes/Project.h"
#include "modes/rowText.h"
#include "platform/FileTypes.h"
#include "util/Unicode.h"

RowContent makeFileRow(const MatchingFileSystemItem& item, const FileURL& url,
                       bool matchFilenameOnly, const FileTypes& fileTypes,
                       const std::optional<AttributeDisplay>& display) {
    RowContent row = makeRowText(url.lastPathComponent(), url.deletingLastPathComponent().path(),
                                 item.indexes.items(), matchFilenameOnly);
    const uint8_t type = item.itemType ? item.itemType : static_cast<uint8_t>(ITEM_FILE);
    row.iconName = fileTypes.iconNameForItem(url, type);
    row.isLink = (type & ITEM_SYMLINK) != 0;
    if (display && item.metadata)
        row.attributes =
            attributeLines(*item.metadata, *display, &item.matching_metadata_criterions);
    if (row.isLink) row.linkPath = url.path();
    return row;
}

std::string quotedItems(const std::vector<FileURL>& urls) {
    if (urls.size() > 1) return std::to_string(urls.size()) + " items";
    return "\"" + displayText(urls.front().lastPathComponent()) + "\"";
}

std::string trashQuestion(const std::vector<FileURL>& urls) {
    return "Do you want to move " + quotedItems(urls) + " to the Trash?";
}

std::string nameOfProject(const Project& project) {
    return displayText(project.isVirtualProject() ? textToPath(project.name) : project.name);
}
