#pragma once
#include "util/FileURL.h"

/// What a path at or below from is called when from is called to. Threads: any.
inline FileURL withPrefixReplaced(const FileURL& url, const FileURL& from, const FileURL& to) {
    return FileURL(to.path() + url.path().substr(from.path().size()));
}
