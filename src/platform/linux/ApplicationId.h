#pragma once
#include <string>

/// Which program a window is of, by the desktop file that it was started with. No X here: the facts
/// about the window are given.
/// Threads: main. Reads /proc and the desktop files. Fails: by an empty answer.
namespace applicationId {

struct WindowFacts {
    std::string gtkId;                // _GTK_APPLICATION_ID
    std::string instance, className;  // both of WM_CLASS
    unsigned pid = 0;
};

/// The id of the desktop file without its suffix; else the class, else the name of the program's
/// file. Where nothing is known of the window: empty.
std::string ofWindow(const WindowFacts& facts);
/// The desktop file with that id; else the program's file.
std::string fileOf(const std::string& id, unsigned pid);

/// The pieces, each empty where it does not say. text is that of /proc/PID/environ and
/// /proc/PID/cgroup.
std::string fromEnvironment(const std::string& text, unsigned pid);
std::string fromControlGroup(const std::string& text);

}  // namespace applicationId
