#include "searchmodes/FolderText.h"

#include <algorithm>

#include "util/Unicode.h"

FolderText::FolderText(const FuzzySearch& fuzzy) {
    for (const RankTerm& term : fuzzy.terms())
        for (const char16_t unit : term.lower()) {
            if (unit >= 128 || std::find(units_.begin(), units_.end(), unit) != units_.end())
                continue;
            slots_[unit] = static_cast<uint8_t>(units_.size());
            units_.push_back(unit);
        }
    equal_.resize(units_.size());
}

void FolderText::enter(const fs_item_t* folder) {
    if (entered_ && folder == folder_) return;
    entered_ = true;
    folder_ = folder;
    hasMask_ = hasBytes_ = hasText_ = hasBits_ = false;
    depth_ = 0;
    for (const fs_item_t* item = folder; item; item = item->parent) depth_++;
}

NameMask FolderText::mask() {
    if (!hasMask_) {
        hasMask_ = true;
        mask_ = presenceOfName(bytes());
    }
    return mask_;
}

const std::string& FolderText::bytes() {
    if (hasBytes_) return bytes_;
    hasBytes_ = true;
    size_t size = 1;
    for (const fs_item_t* item = folder_; item && item->parent; item = item->parent)
        size += item->name_length + 1u;
    bytes_.assign(size, '/');
    for (const fs_item_t* item = folder_; item && item->parent; item = item->parent) {
        size -= item->name_length + 1u;
        bytes_.replace(size, item->name_length, item->nameView());
    }
    return bytes_;
}

const std::optional<std::u16string>& FolderText::text() {
    if (!hasText_) {
        hasText_ = true;
        text_ = toUtf16(bytes());
        if (text_) text_ = nfc(*text_);
    }
    return text_;
}

const UnitBits256& FolderText::equal(char16_t unit) {
    prepareBits();
    return equal_[slots_[unit]];
}

const UnitBits256& FolderText::wordStarts() {
    prepareBits();
    return wordStarts_;
}

void FolderText::prepareBits() {
    if (hasBits_) return;
    hasBits_ = true;
    const size_t length = bytes().size();
    bytes_.reserve(length + kReadableBehind);  // wide loads read on
    const AsciiText<UnitBits256> text(bytes_.data(), static_cast<unsigned>(length));
    for (size_t i = 0; i < units_.size(); i++) equal_[i] = text.equal(units_[i]);
    wordStarts_ = text.wordStarts();
}
