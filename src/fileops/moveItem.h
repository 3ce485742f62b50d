#pragma once
#include "util/FileURL.h"
#include "util/Result.h"

/// Gives a file or folder another path on the same disk. Whatever stands there is never replaced;
/// not even looked at before: the system refuses.
/// Threads: any.
/// Fails:   by an Error of domain "posix" with errno as its code.
Result<void> moveItem(const FileURL& from, const FileURL& to);
