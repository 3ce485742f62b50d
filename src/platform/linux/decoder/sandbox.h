#pragma once
#include <string>

/// What the decoder gives up before it looks into a file, since the file may have been made to
/// attack it. Threads: the program's only one.
/// Fails:   silently: a kernel without one of the means leaves the others.
namespace sandbox {

enum class Urgency { awaited, background };
/// Memory, processor time, open files, size of a core; it ends with who started it.
void limitResources(Urgency urgency);
/// From here on: no network, no other program, nothing is written, removed or renamed, and beside
/// what is open already only the system's own files and those in the program's folder are read.
void enter(const std::string& programFolder);

}  // namespace sandbox
