#pragma once
#include <optional>

#include "platform/EntryPoints.h"

/// What the program was started with. No Qt here: it is read before there is a display.
/// Threads: main.
struct CommandLine {
    EntryPoints::Wish wish;     // of the instance that runs, or of this one once it is launched
    std::optional<int> status;  // end with it at once: the line asked for a text, or made no sense
};

/// Prints what the line asks for, or what is wrong with it.
CommandLine parseCommandLine(int count, const char* const* arguments);
