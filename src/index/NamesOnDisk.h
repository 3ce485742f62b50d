#pragma once
#include <optional>
#include <string>

#include "util/Result.h"

class FileURL;

/// How a disk takes upper and lower case. A test can have another one.
/// Threads: any.
class NamesOnDisk {
  public:
    virtual ~NamesOnDisk() = default;
    /// Whether names that differ in case alone are two names in the folder around the path.
    virtual Result<bool> isCaseSensitive(const FileURL& url) const;
    /// The last component as the disk spells it; where that is another one than in the path, the
    /// two differ in case alone.
    virtual Result<std::string> nameOf(const FileURL& url) const;
};
