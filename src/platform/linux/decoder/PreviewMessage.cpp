#include "platform/linux/decoder/PreviewMessage.h"

#include <algorithm>
#include <cstring>

namespace previewMessage {
namespace {

enum Tag : uint8_t {
    kKind = 1,  // of the preview, and whether the item is a folder
    kFactName,
    kFactValue,
    kText,
    kFile,  // an entry of a folder
    kFolder,
    kMessage,
    kPicture,  // width, height, pixels
    kEnd,
};
constexpr size_t kHead = 1 + sizeof(uint32_t);
constexpr size_t kPictureHead = 2 * sizeof(uint32_t);

void append(std::string& out, Tag tag, std::string_view bytes, size_t most) {
    bytes = bytes.substr(0, most);
    const auto length = static_cast<uint32_t>(bytes.size());
    out += static_cast<char>(tag);
    out.append(reinterpret_cast<const char*>(&length), sizeof length);
    out += bytes;
}

void appendPicture(std::string& out, const Picture& picture) {
    std::string bytes(kPictureHead, '\0');
    std::memcpy(bytes.data(), &picture.width, sizeof picture.width);
    std::memcpy(bytes.data() + sizeof picture.width, &picture.height, sizeof picture.height);
    bytes.append(reinterpret_cast<const char*>(picture.pixels.data()),
                 picture.pixels.size() * sizeof(uint32_t));
    append(out, kPicture, bytes, bytes.size());
}

std::shared_ptr<const Picture> readPicture(std::string_view bytes, uint32_t most) {
    if (bytes.size() < kPictureHead) return nullptr;
    auto picture = std::make_shared<Picture>();
    std::memcpy(&picture->width, bytes.data(), sizeof picture->width);
    std::memcpy(&picture->height, bytes.data() + sizeof picture->width, sizeof picture->height);
    if (picture->width == 0 || picture->width > most) return nullptr;
    if (picture->height == 0 || picture->height > most) return nullptr;
    const size_t count = size_t{picture->width} * picture->height;
    if (bytes.size() - kPictureHead != count * sizeof(uint32_t)) return nullptr;
    picture->pixels.resize(count);
    std::memcpy(picture->pixels.data(), bytes.data() + kPictureHead, count * sizeof(uint32_t));
    // More colour than opacity is no colour.
    for (uint32_t& pixel : picture->pixels) {
        const uint32_t alpha = pixel >> 24;
        if (alpha == 255) continue;
        for (const unsigned shift : {16U, 8U, 0U})
            if (((pixel >> shift) & 255) > alpha)
                pixel = (pixel & ~(255U << shift)) | (alpha << shift);
    }
    return picture;
}

/// False: this record cannot stand in an answer.
bool readRecord(Preview& preview, uint8_t tag, std::string_view bytes, uint32_t pixels) {
    const auto isValue = bytes.size() <= kMostValue;
    switch (tag) {
        case kKind:
            if (bytes.size() != 2 || static_cast<uint8_t>(bytes[0]) > 3) return false;
            preview.kind = static_cast<Preview::Kind>(bytes[0]);
            preview.isFolder = bytes[1] != 0;
            return true;
        case kFactName:
            preview.facts.push_back({std::string(bytes.substr(0, kMostValue)), {}});
            return isValue && preview.facts.size() <= kMostFacts;
        case kFactValue:
            if (!isValue || preview.facts.empty()) return false;
            preview.facts.back().value = bytes;
            return true;
        case kText:
            preview.text = bytes.substr(0, kMostText);
            return bytes.size() <= kMostText;
        case kFile:
        case kFolder:
            preview.entries.push_back({std::string(bytes.substr(0, kMostValue)), tag == kFolder});
            return isValue && preview.entries.size() <= kMostEntries;
        case kMessage:
            preview.message = bytes.substr(0, kMostValue);
            return isValue;
        case kPicture:
            if (preview.picture) return false;
            preview.picture = readPicture(bytes, std::min(pixels, kMostPixels));
            return preview.picture != nullptr;
        default:
            return false;
    }
}

}  // namespace

std::string encode(const Preview& preview) {
    std::string out;
    const char kind[] = {static_cast<char>(preview.kind), static_cast<char>(preview.isFolder)};
    append(out, kKind, {kind, 2}, 2);
    for (size_t i = 0; i < std::min(preview.facts.size(), kMostFacts); i++) {
        append(out, kFactName, preview.facts[i].name, kMostValue);
        append(out, kFactValue, preview.facts[i].value, kMostValue);
    }
    if (!preview.text.empty()) append(out, kText, preview.text, kMostText);
    for (size_t i = 0; i < std::min(preview.entries.size(), kMostEntries); i++)
        append(out, preview.entries[i].isFolder ? kFolder : kFile, preview.entries[i].name,
               kMostValue);
    if (!preview.message.empty()) append(out, kMessage, preview.message, kMostValue);
    if (preview.picture) appendPicture(out, *preview.picture);
    append(out, kEnd, {}, 0);
    return out;
}

std::optional<Preview> decode(std::string_view bytes, uint32_t pixels) {
    auto preview = decodeNext(bytes, pixels);
    return bytes.empty() ? std::move(preview) : std::nullopt;
}

std::optional<Preview> decodeNext(std::string_view& bytes, uint32_t pixels) {
    Preview preview;
    while (bytes.size() >= kHead) {
        const auto tag = static_cast<uint8_t>(bytes[0]);
        uint32_t length = 0;
        std::memcpy(&length, bytes.data() + 1, sizeof length);
        bytes.remove_prefix(kHead);
        if (tag == kEnd) {
            const bool lacksPicture = preview.kind == Preview::Kind::picture && !preview.picture;
            return lacksPicture || length != 0 ? std::nullopt : std::optional(std::move(preview));
        }
        if (length > bytes.size() || !readRecord(preview, tag, bytes.substr(0, length), pixels))
            return std::nullopt;
        bytes.remove_prefix(length);
    }
    return std::nullopt;
}

}  // namespace previewMessage
