#pragma once
#include <cstdint>
#include <string>

/// What Return, with the modifiers that are held, does to a row that is selected.
struct RowAction {
    enum class Symbol : uint8_t {
        pending,  // what it will be is being found out: its place stays free
        open,
        openFolder,
        openInFrontmost,
        copyPath,
        copyName,
        copyContent,
        typePath,
        typeName,
        rename,
        reveal,
        showInfo,
        edit,
        terminal,
        search,
        browse,
        command,     // any other
        userAction,  // the user's own
    };
    Symbol symbol = Symbol::command;
    std::string label = {};     // UTF-8 that can be shown
    std::string iconName = {};  // of an application, which stands for the symbol: freedesktop icon
                                // name, or the path of a picture
    friend bool operator==(const RowAction&, const RowAction&) = default;
};
