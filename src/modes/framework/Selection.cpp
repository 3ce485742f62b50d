#include "modes/framework/Selection.h"

#include <string>

#include "util/withPrefixReplaced.h"

namespace {

bool isBelow(const FileURL& url, const FileURL& folder) {
    return url.path().starts_with(folder.path() + "/");
}

}  // namespace

void Selection::renamePath(const FileURL& from, const FileURL& to) {
    // Kept: whether items below the old path follow is asked of the path selection, not of them.
    const bool itemsBelowFollow = pathSelection && isBelow(*pathSelection, from);
    if (itemsBelowFollow || pathSelection == from)
        pathSelection = withPrefixReplaced(*pathSelection, from, to);

    if (selectedItems.empty() || !std::holds_alternative<FileURL>(selectedItems.front())) return;
    for (Item& item : selectedItems) {
        auto* url = std::get_if<FileURL>(&item);
        if (url && (*url == from || (itemsBelowFollow && isBelow(*url, from))))
            *url = withPrefixReplaced(*url, from, to);
    }
}
