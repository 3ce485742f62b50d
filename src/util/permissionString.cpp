#include "util/permissionString.h"

#include <string_view>

std::string permissionString(uint32_t mode) {
    std::string text = "--- --- ---";
    constexpr std::string_view kLetters = "rwx rwx rwx";
    unsigned bit = 256;
    for (size_t i = 0; i < text.size(); i++) {
        if (kLetters[i] == ' ')
            text[i] = ' ';
        else {
            if (mode & bit) text[i] = kLetters[i];
            bit >>= 1;
        }
    }
    return text;
}
