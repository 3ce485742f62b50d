#pragma once
#include <functional>
#include <string>

/// Finds out whether a symbolic link leads somewhere, away from the main thread: what it points at
/// may be on a disk that sleeps or a computer that does not answer. answer: called on the main
/// thread. Threads: main, while there is a World.
void followLink(const std::string& path, std::function<void(bool leadsSomewhere)> answer);
