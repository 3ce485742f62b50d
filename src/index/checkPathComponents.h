#pragma once
#include <cstdint>

#include "util/FileURL.h"

struct FSEventHandlerArguments;
class FileTypes;

enum class PathComponents : int32_t {
    tooDeep = -1,
    insideBundle = -2,  // or the bundle itself
    excluded = -3,
    wellFormed = 0,
};

/// Whether the folder at hand has anything to do with the event's path, judged by the depth limit
/// and by each component from the top down. Composes the folder's rules, and leaves the relative
/// path in the arguments. bundleURL: set with insideBundle.
PathComponents checkPathComponents(FSEventHandlerArguments& arguments, const FileTypes& types,
                                   FileURL& bundleURL);
