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
/// From here on: no network; no other program is started, signalled, looked into or given another
/// rank; nothing is written beside what is open for that already, and no file or file's attribute
/// is changed, removed, renamed or locked; and beside what is open already only the system's own
/// files and those in the program's folder are read. That a file is there, and how large it is, can
/// still be asked. False: that does not hold, and no file may be looked into.
[[nodiscard]] bool enter(const std::string& programFolder);

}  // namespace sandbox
