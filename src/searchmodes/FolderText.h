#pragma once
#include <optional>
#include <string>
#include <unordered_map>
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
    /// terms outlive it.
    explicit FolderText(const FuzzySearch& fuzzy);

    /// The folder of the next items; null for the root's own.
    void enter(const fs_item_t* folder);
    /// Ancestors of an item in it.
    uint16_t depth() const { return depth_; }
    /// Letters of the folder's path.
    NameMask mask();
    bool isAscii() { return (mask() & kNotAscii) == 0; }
    /// The path and the slash behind it.
    const std::string& bytes();
    /// The same precomposed; nothing where it is not valid UTF-8.
    const std::optional<std::u16string>& text();
    /// Positions of a term's unit in an ASCII path of at most kMaxUnits.
    const UnitBits256& equal(char16_t unit);
    const UnitBits256& wordStarts();
    static constexpr size_t kMaxUnits = 192;

  private:
    void prepareBits();

    const fs_item_t* folder_ = nullptr;
    bool entered_ = false, hasMask_ = false, hasBytes_ = false, hasText_ = false, hasBits_ = false;
    uint16_t depth_ = 0;
    NameMask mask_ = 0;
    std::string bytes_;
    std::optional<std::u16string> text_;
    uint8_t slots_[128] = {};  // of each unit of the terms in equal_
    std::vector<char16_t> units_;
    std::vector<UnitBits256> equal_;
    UnitBits256 wordStarts_;
};

/// An ASCII path: the folder's part known already, the name's looked up.
template <class Bits>
class PathText {
  public:
    using BitsType = Bits;
    PathText(FolderText& folder, const AsciiText<uint64_t>& name)
        : folder_(folder), name_(name), nameBegin_(static_cast<unsigned>(folder.bytes().size())) {}
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
    const AsciiText<uint64_t>& name_;
    const unsigned nameBegin_;
};
