#pragma once
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "index/NameMask.h"
#include "index/fs_item.h"
#include "searchmodes/FuzzySearch.h"
#include "searchmodes/UnitBits.h"

/// What all items of one folder share while whole paths are matched: consecutive items mostly stand
/// in the same folder, so it is made once for a row of them.
/// Owner:   RankWorker. Threads: one, in a read section.
class FolderText {
  public:
    /// fuzzy and the masks of all items' names outlive it.
    FolderText(const FuzzySearch& fuzzy, std::span<const NameMask> masks);

    /// The folder of the next items; null for the root's own.
    void enter(const fs_item_t* folder) {
        if (folder != folder_ || !entered_) change(folder);
    }
    /// Ancestors of an item in it.
    uint16_t depth() const { return depth_; }
    /// Letters of the folder's path.
    NameMask mask() const { return mask_; }
    bool isAscii() const { return (mask_ & kNotAscii) == 0; }
    /// The path and the slash behind it.
    const std::string& bytes();
    /// The same precomposed; nothing where it is not valid UTF-8.
    const std::optional<std::u16string>& text();
    /// How long the text is in units, as far as positions are to be had for it.
    static constexpr size_t kMaxUnits = 192;
    std::optional<unsigned> length();
    /// Positions of a term's unit, and of word starts.
    const UnitBits256& equal(char16_t unit) {
        if (!hasBits_) prepareBits();
        return unit < 128 ? equal_[slots_[unit]] : equal_[slotOf(unit)];
    }
    const UnitBits256& wordStarts() {
        if (!hasWordStarts_) prepareWordStarts();
        return wordStarts_;
    }

  private:
    void change(const fs_item_t* folder);
    size_t slotOf(char16_t unit) const;
    void prepareBits();
    void prepareWordStarts();
    template <class F>
    void withPositions(F&& f);

    const std::span<const NameMask> masks_;
    const fs_item_t* folder_ = nullptr;
    bool entered_ = false;
    bool hasBytes_ = false, hasText_ = false, hasBits_ = false, hasWordStarts_ = false;
    uint16_t depth_ = 0;
    NameMask mask_ = 0;
    std::string bytes_;
    std::optional<std::u16string> text_;
    uint16_t slots_[128] = {};     // of ASCII units in the next two
    std::vector<char16_t> units_;  // of the terms, each once
    std::vector<UnitBits256> equal_;
    UnitBits256 wordStarts_;
};

/// A path whose folder's part is known already; the name's is looked up. Name: AsciiText or
/// WideText.
template <class Bits, class Name>
class PathText {
  public:
    using BitsType = Bits;
    PathText(FolderText& folder, unsigned folderLength, const Name& name)
        : folder_(folder), name_(name), nameBegin_(folderLength) {}
    unsigned length() const { return nameBegin_ + name_.length(); }
    Bits equal(char16_t unit) const {
        return cut(folder_.equal(unit)) | Bits(name_.equal(unit)) << nameBegin_;
    }
    Bits wordStarts() const {
        return cut(folder_.wordStarts()) | Bits(name_.wordStarts()) << nameBegin_;
    }

  private:
    static Bits cut(const UnitBits256& bits) {
        if constexpr (std::is_same_v<Bits, uint64_t>)
            return bits.words[0];
        else if constexpr (std::is_same_v<Bits, UnitBits128>)
            return Bits(bits.words[1]) << 64 | bits.words[0];
        else
            return bits;
    }
    FolderText& folder_;
    const Name& name_;
    const unsigned nameBegin_;
};
