#pragma once
#include <cstdint>
#include <string>

#include "util/FileURL.h"

/// What kinds of files there are, as the desktop sees it. Threads: any.
class FileTypes {
  public:
    virtual ~FileTypes() = default;
    /// Whether the desktop takes this folder for one file. Asked of folders with a dot in their
    /// name.
    virtual bool isFilePackageAtPath(const FileURL& folder) const = 0;
    /// The freedesktop icon name of an item, from its name and item type alone: no file is read.
    virtual std::string iconNameForItem(const FileURL& url, uint8_t itemType) const = 0;
};
