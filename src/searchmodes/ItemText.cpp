#include "searchmodes/ItemText.h"

#include "searchmodes/precomposedText.h"
#include "util/Unicode.h"

bool ItemText::set(const fs_item_t& item, FolderText& folder) {
    text_.clear();
    if (!request_.filenameOnly) {
        if (!folder.text()) return false;
        text_ = *folder.text();
    }
    if (!appendPrecomposed(item.nameView(), text_) || text_.empty()) return false;
    if (request_.ignoreDiacritics) text_ = stringByRemovingDiacritics(text_);
    return true;
}

bool ItemText::setName(const fs_item_t& item) {
    text_.clear();
    return appendPrecomposed(item.nameView(), text_);
}
