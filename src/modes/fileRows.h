#pragma once
#include <optional>

#include "modes/framework/MatchingItem.h"
#include "modes/framework/attributeLines.h"
#include "screen/ModeLook.h"
#include "screen/RowContent.h"

class FileTypes;
class Project;

/// What rows of modes without an index have in common. Threads: any.

/// Name, folder, icon, and the lines below as far as they are displayed; the marks are the mode's.
RowContent makeFileRow(const MatchingFileSystemItem& item, const FileURL& url,
                       bool matchFilenameOnly, const FileTypes& fileTypes,
                       const std::optional<AttributeDisplay>& display);
/// For questions: the name in double quotes, or "3 items". Not for none.
std::string quotedItems(const std::vector<FileURL>& urls);
std::string trashQuestion(const std::vector<FileURL>& urls);
/// For the user; that of a virtual project is a path.
std::string nameOfProject(const Project& project);

/// The grounds that a mode of one hue stands on.
struct Hues {
    double hue;

    Colour background(bool dark) const {
        return dark ? Colour{hue, 0.26, 0.125} : Colour{hue, 0.015, 0.985};
    }
    Colour oddRow(bool dark) const { return dark ? Colour{hue, 0.26, 0.14} : Colour{0, 0, 1}; }
    Colour evenRow(bool dark) const { return dark ? background(true) : Colour{0, 0, 1}; }
};
