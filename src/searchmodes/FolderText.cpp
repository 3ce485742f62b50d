#include "searchmodes/FolderText.h"

#include <algorithm>

#include "searchmodes/AsciiText.h"
#include "searchmodes/WideText.h"
#include "searchmodes/precomposedText.h"

FolderText::FolderText(const FuzzySearch& fuzzy, std::span<const NameMask> masks) : masks_(masks) {
    for (const RankTerm& term : fuzzy.terms()) {
        if (!term.isPlain()) continue;  // then no positions are asked for
        for (const char16_t unit : term.lower()) {
            if (std::find(units_.begin(), units_.end(), unit) != units_.end()) continue;
            if (unit < 128) slots_[unit] = static_cast<uint16_t>(units_.size());
            units_.push_back(unit);
        }
    }
    equal_.resize(units_.size());
}

void FolderText::change(const fs_item_t* folder) {
    entered_ = true;
    folder_ = folder;
    hasBytes_ = hasText_ = hasBits_ = hasWordStarts_ = false;
    depth_ = 0;
    mask_ = 0;
    for (const fs_item_t* item = folder; item; item = item->parent) {
        depth_++;
        mask_ |= item->index < masks_.size() ? masks_[item->index] : ~NameMask{0};
    }
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
        text_.emplace();
        if (!appendPrecomposed(bytes(), *text_)) text_.reset();
    }
    return text_;
}

std::optional<unsigned> FolderText::length() {
    size_t length = bytes().size();
    if (!isAscii()) {
        if (!text()) return std::nullopt;
        length = text()->size();
    }
    return length <= kMaxUnits ? std::optional(static_cast<unsigned>(length)) : std::nullopt;
}

size_t FolderText::slotOf(char16_t unit) const {
    const auto at = std::find(units_.begin(), units_.end(), unit);
    return static_cast<size_t>(at - units_.begin());
}

/// Calls f with the text in the form in which positions are found.
template <class F>
void FolderText::withPositions(F&& f) {
    if (isAscii()) {
        const size_t length = bytes().size();
        bytes_.reserve(length + kReadableBehind);  // wide loads read on
        f(AsciiText<UnitBits256>(bytes_.data(), static_cast<unsigned>(length)));
    } else {
        f(WideText<UnitBits256>(*text()));
    }
}

void FolderText::prepareBits() {
    hasBits_ = true;
    withPositions([this](const auto& text) {
        for (size_t i = 0; i < units_.size(); i++) equal_[i] = text.equal(units_[i]);
    });
}

void FolderText::prepareWordStarts() {
    hasWordStarts_ = true;
    withPositions([this](const auto& text) { wordStarts_ = text.wordStarts(); });
}
