#pragma once
#include <dirent.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "util/Unicode.h"

/// Text for a fuzzer's bytes: UTF-8, in which a byte that is none becomes half of a character.
inline std::u16string textFromBytes(std::string_view bytes) {
    std::u16string text;
    while (!bytes.empty()) {
        size_t length = 1;
        std::optional<std::u16string> character = toUtf16(bytes.substr(0, 1));
        while (!character && length < 4 && length < bytes.size())
            character = toUtf16(bytes.substr(0, ++length));
        if (!character) {
            length = 1;
            character = std::u16string(1, static_cast<char16_t>(0xD800 + (bytes[0] & 127) * 16));
        }
        text += *character;
        bytes.remove_prefix(length);
    }
    return text;
}

inline std::pair<std::u16string, std::u16string> lineAndRest(const std::u16string& text) {
    const size_t end = std::min(text.find(u'\n'), text.size());
    return {text.substr(0, end), end < text.size() ? text.substr(end + 1) : std::u16string()};
}

/// What stands in the files of a folder.
inline std::vector<std::string> contentsOfFolder(const std::string& folder) {
    std::vector<std::string> contents;
    DIR* directory = opendir(folder.c_str());
    if (!directory) return contents;
    while (const dirent* entry = readdir(directory)) {
        if (entry->d_name[0] == '.') continue;
        std::ifstream file(folder + "/" + entry->d_name, std::ios::binary);
        contents.emplace_back(std::istreambuf_iterator<char>(file),
                              std::istreambuf_iterator<char>());
    }
    closedir(directory);
    return contents;
}
