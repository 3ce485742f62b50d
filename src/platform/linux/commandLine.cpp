#include "platform/linux/commandLine.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <string_view>

namespace {

constexpr int kWrongUse = 2;
constexpr std::array<std::string_view, 5> kActions = {"toggle", "search", "browse", "recent",
                                                      "marked"};
constexpr std::string_view kScheme = "trovast:";
constexpr auto kHelp =
    "Usage: trovast [OPTION] [LINK...]\n"
    "Finds files by a few letters of their names. A second start shows the window of the\n"
    "program that runs, or takes it away.\n"
    "\n"
    "  --action NAME  toggle, search, browse, recent or marked: show the window so\n"
    "  --hidden       wait without a window, as at the start of a session\n"
    "  --help         show this text\n"
    "  --version      show the version\n"
    "\n"
    "A LINK begins with \"trovast:\".\n";

CommandLine printed(const char* text) {
    std::fputs(text, stdout);
    return {.wish = {}, .status = 0};
}

CommandLine refused(const char* why, std::string_view argument) {
    std::fprintf(stderr, "trovast: %s: %.*s\nTry trovast --help.\n", why, int(argument.size()),
                 argument.data());
    return {.wish = {}, .status = kWrongUse};
}

}  // namespace

CommandLine parseCommandLine(int count, const char* const* arguments) {
    CommandLine line{.wish = {.action = "toggle", .urls = {}}, .status = {}};
    for (int i = 1; i < count; ++i) {
        const std::string_view argument = arguments[i];
        if (argument == "--help") return printed(kHelp);
        if (argument == "--version") return printed("trovast " TROVAST_VERSION "\n");
        if (argument == "--hidden") {
            line.wish.action.clear();
        } else if (argument == "--action") {
            const std::string_view name = ++i < count ? arguments[i] : "";
            if (std::find(kActions.begin(), kActions.end(), name) == kActions.end())
                return refused("no such action", name);
            line.wish.action = name;
        } else if (argument.starts_with(kScheme)) {
            line.wish.urls.emplace_back(argument);
        } else {
            return refused("neither an option nor a link", argument);
        }
    }
    return line;
}
