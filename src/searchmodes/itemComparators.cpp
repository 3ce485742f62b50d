#include "searchmodes/itemComparators.h"

#include <unicode/stringoptions.h>
#include <unicode/ustring.h>

#include <algorithm>
#include <optional>
#include <string_view>
#include <vector>

#include "index/fs_item.h"
#include "util/log.h"

namespace {

int sign(int value) {
    return (value > 0) - (value < 0);
}

/// What ICU says of two names; any length.
int compareUnfolded(std::string_view a, std::string_view b) {
    auto convert = [](std::string_view name) -> std::optional<std::u16string> {
        std::u16string out(name.size() + 1, u'\0');
        int32_t length = 0;
        UErrorCode status = U_ZERO_ERROR;
        u_strFromUTF8Lenient(out.data(), static_cast<int32_t>(out.size()), &length, name.data(),
                             static_cast<int32_t>(name.size()), &status);
        if (U_FAILURE(status)) {
            logWarning("Failed to convert \"%.*s\" from utf8 to utf16: %s",
                       static_cast<int>(name.size()), name.data(), u_errorName(status));
            return std::nullopt;
        }
        out.resize(static_cast<size_t>(length));
        return out;
    };
    const auto x = convert(a), y = convert(b);
    if (!x || !y) return -1;
    UErrorCode status = U_ZERO_ERROR;
    return sign(u_strCaseCompare(x->data(), static_cast<int32_t>(x->size()), y->data(),
                                 static_cast<int32_t>(y->size()), U_COMPARE_CODE_POINT_ORDER,
                                 &status));
}

/// The same without ICU as long as both are ASCII, which mostly decides it.
int compareNames(std::string_view a, std::string_view b) {
    const size_t shared = std::min(a.size(), b.size());
    for (size_t i = 0; i < shared; i++) {
        auto x = static_cast<unsigned char>(a[i]), y = static_cast<unsigned char>(b[i]);
        if ((x | y) & 0x80) return compareUnfolded(a, b);
        if (x >= 'A' && x <= 'Z') x |= 32;
        if (y >= 'A' && y <= 'Z') y |= 32;
        if (x != y) return x < y ? -1 : 1;
    }
    return (a.size() > b.size()) - (a.size() < b.size());
}

/// From the item up, the root left out.
void listAncestors(const fs_item_t* item, std::vector<const fs_item_t*>& out) {
    out.clear();
    for (; item && item->parent; item = item->parent) out.push_back(item);
}

}  // namespace

int comparePathsOfItems(const fs_item_t* a, const fs_item_t* b) {
    thread_local std::vector<const fs_item_t*> first, second;
    listAncestors(a, first);
    listAncestors(b, second);
    size_t i = first.size(), j = second.size();
    for (; i > 0 && j > 0; i--, j--) {
        const fs_item_t *x = first[i - 1], *y = second[j - 1];
        if (x == y) continue;
        if (const int order = compareNames(x->nameView(), y->nameView())) return order;
    }
    return (i > 0) - (j > 0);
}

int fs_item_path_compare(const fs_item_t* a, const fs_item_t* b) {
    if (a == b) return 0;
    const int order = comparePathsOfItems(a, b);
    return order ? order : -1;
}

int lastPathComponentComperator(const fs_item_t* a, const fs_item_t* b) {
    return compareNames(a->nameView(), b->nameView());
}

std::string_view extensionOfName(std::string_view name) {
    const size_t dot = name.rfind('.');
    return dot == std::string_view::npos || dot == 0 ? std::string_view() : name.substr(dot + 1);
}

int filenameExtensionComperator(const fs_item_t* a, const fs_item_t* b) {
    const auto x = extensionOfName(a->nameView()), y = extensionOfName(b->nameView());
    if (x.empty()) return -1;
    if (y.empty()) return 1;
    return compareNames(x, y);
}
