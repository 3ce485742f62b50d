#include "platform/linux/ApplicationId.h"

#include <gio/gdesktopappinfo.h>
#include <gio/gio.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cstdio>
#include <memory>
#include <string_view>

namespace {

constexpr std::string_view kSuffix = ".desktop";
constexpr size_t kMostRead = 256 * 1024;

struct Unref {
    void operator()(void* object) const { g_object_unref(object); }
};
using DesktopFile = std::unique_ptr<GDesktopAppInfo, Unref>;

std::string withoutSuffix(std::string name) {
    if (name.ends_with(kSuffix)) name.resize(name.size() - kSuffix.size());
    return name;
}

std::string lastComponent(const std::string& path) {
    return path.substr(path.rfind('/') + 1);
}

std::string procFile(unsigned pid, const char* name) {
    return "/proc/" + std::to_string(pid) + "/" + name;
}

std::string readProcFile(unsigned pid, const char* name) {
    FILE* const file = std::fopen(procFile(pid, name).c_str(), "re");
    if (!file) return {};
    std::string text(kMostRead, '\0');
    text.resize(std::fread(text.data(), 1, text.size(), file));
    std::fclose(file);
    return text;
}

std::string executableOf(unsigned pid) {
    std::array<char, PATH_MAX> path{};
    const ssize_t length = readlink(procFile(pid, "exe").c_str(), path.data(), path.size());
    return length > 0 ? std::string(path.data(), size_t(length)) : std::string();
}

DesktopFile desktopFile(const std::string& id) {
    if (id.empty() || id.find('/') != std::string::npos) return nullptr;
    return DesktopFile(g_desktop_app_info_new((id + std::string(kSuffix)).c_str()));
}

/// Units write a hyphen inside of an id as \x2d.
std::string unescaped(std::string_view text) {
    std::string result;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text.substr(i, 4) == "\\x2d") {
            result += '-';
            i += 3;
        } else {
            result += text[i];
        }
    }
    return result;
}

std::string byWindowClass(const std::string& name) {
    if (name.empty()) return {};
    if (desktopFile(name)) return name;
    std::string lower = name;
    for (char& c : lower) c = char(g_ascii_tolower(c));
    if (desktopFile(lower)) return lower;
    std::string found;
    GList* const all = g_app_info_get_all();
    for (GList* at = all; at && found.empty(); at = at->next) {
        const char* wmClass = g_desktop_app_info_get_startup_wm_class(G_DESKTOP_APP_INFO(at->data));
        if (wmClass && name == wmClass)
            found = withoutSuffix(g_app_info_get_id(G_APP_INFO(at->data)));
    }
    g_list_free_full(all, g_object_unref);
    return found;
}

}  // namespace

std::string applicationId::fromEnvironment(const std::string& text, unsigned pid) {
    constexpr std::string_view kFile = "GIO_LAUNCHED_DESKTOP_FILE=";
    constexpr std::string_view kPid = "GIO_LAUNCHED_DESKTOP_FILE_PID=";
    std::string file, launched;
    for (size_t begin = 0; begin < text.size();) {
        const size_t end = std::min(text.find('\0', begin), text.size());
        const std::string_view entry(text.data() + begin, end - begin);
        if (entry.starts_with(kFile)) file = entry.substr(kFile.size());
        if (entry.starts_with(kPid)) launched = entry.substr(kPid.size());
        begin = end + 1;
    }
    // A program that this one started has inherited both.
    return launched == std::to_string(pid) ? withoutSuffix(lastComponent(file)) : std::string();
}

std::string applicationId::fromControlGroup(const std::string& text) {
    std::string unit = text.substr(0, text.find_last_not_of('\n') + 1);
    unit = lastComponent(unit.substr(unit.rfind('\n') + 1));
    if (!unit.starts_with("app-")) return {};
    const bool isScope = unit.ends_with(".scope");
    if (!isScope && !unit.ends_with(".service")) return {};
    unit.resize(unit.rfind('.'));
    // What tells two runs apart: "-1234" of a scope, "@1234" of a service.
    const size_t run = unit.rfind(isScope ? '-' : '@');
    if (run != std::string::npos) unit.resize(run);
    const size_t launcher = unit.rfind('-');  // such as "app-gnome-"
    return launcher == std::string::npos ? std::string() : unescaped(unit.substr(launcher + 1));
}

std::string applicationId::ofWindow(const WindowFacts& facts) {
    if (!facts.gtkId.empty()) return facts.gtkId;
    if (facts.pid != 0) {
        std::string id = fromEnvironment(readProcFile(facts.pid, "environ"), facts.pid);
        if (id.empty()) id = fromControlGroup(readProcFile(facts.pid, "cgroup"));
        if (!id.empty()) return id;
    }
    for (const std::string& name : {facts.className, facts.instance})
        if (std::string id = byWindowClass(name); !id.empty()) return id;
    if (!facts.className.empty()) return facts.className;
    return facts.pid != 0 ? lastComponent(executableOf(facts.pid)) : std::string();
}

std::string applicationId::fileOf(const std::string& id, unsigned pid) {
    if (const DesktopFile file = desktopFile(id))
        if (const char* path = g_desktop_app_info_get_filename(file.get())) return path;
    return pid != 0 ? executableOf(pid) : std::string();
}
