#pragma once
#include <string>

/// What the decoder gives up before it looks into a file, since the file may have been made to
/// attack it. Threads: the program's only one.
/// Fails:   by enter's result. An old kernel that cannot confine to folders leaves the rest, which
///          must hold.
namespace sandbox {

enum class Urgency { awaited, background };
/// Memory, processor time, open files, size of a core; it ends with who started it.
void limitResources(Urgency urgency);
/// From here on: no network, no other program, nothing is written, removed or renamed, and beside
/// what is open already only the system's own files and those in the program's folder are read.
/// False: that does not hold, and no file may be looked into.
[[nodiscard]] bool enter(const std::string& programFolder);

}  // namespace sandbox
