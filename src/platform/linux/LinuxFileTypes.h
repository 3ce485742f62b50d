#pragma once
#include "platform/FileTypes.h"

/// File types by the shared MIME database. Names only: nothing is read or looked up on disk.
/// Owner:   main. Threads: any; the database has a lock of its own. About 5 µs a name, so nothing
/// is
///          kept: a memory by extension would take "CMakeLists.txt" for any other text.
/// Fails:   never; a name that no rule knows is an unknown file.
class LinuxFileTypes : public FileTypes {
  public:
    /// No folder is one: this desktop has no packages.
    bool isFilePackageAtPath(const FileURL& folder) const override;
    std::string iconNameForItem(const FileURL& url, uint8_t itemType) const override;
};
