#include "platform/linux/decoder/PreviewMessage.h"

#include <gtest/gtest.h>

using previewMessage::encode;

namespace {

std::optional<Preview> decode(const std::string& bytes) {
    return previewMessage::decode(bytes, 100);
}

Preview sample() {
    Preview preview;
    preview.kind = Preview::Kind::picture;
    preview.text = "text";
    preview.message = "message";
    preview.facts = {{"Size", "3"}, {"Kind", ""}};
    preview.entries = {{"a", true}, {"b", false}};
    preview.picture = std::make_shared<Picture>(Picture{2, 1, {0xff102030, 0x80ff0010}});
    return preview;
}

std::string record(char tag, uint32_t length, std::string bytes) {
    return std::string(1, tag) + std::string(reinterpret_cast<const char*>(&length), 4) + bytes;
}

}  // namespace

TEST(PreviewMessage, ArrivesWholeAndWithPossibleColours) {
    const auto got = decode(encode(sample()));
    ASSERT_TRUE(got);
    EXPECT_EQ(got->text, "text");
    EXPECT_EQ(got->message, "message");
    EXPECT_EQ(got->facts, sample().facts);
    EXPECT_EQ(got->entries, sample().entries);
    EXPECT_EQ(*got->picture, (Picture{2, 1, {0xff102030, 0x80800010}}));
}

TEST(PreviewMessage, NothingBeyondItsBoundsIsTaken) {
    const std::string whole = encode(sample());
    for (size_t length = 0; length < whole.size(); length++)
        EXPECT_FALSE(decode(whole.substr(0, length))) << length;
    EXPECT_FALSE(decode(whole + "x"));
    const std::string end = record(9, 0, "");
    const auto size = [](uint32_t width, uint32_t height) {
        return std::string(reinterpret_cast<const char*>(&width), 4) +
               std::string(reinterpret_cast<const char*>(&height), 4);
    };
    std::string facts;
    for (int i = 0; i < 33; i++) facts += record(2, 1, "x");
    const std::pair<const char*, std::string> cases[] = {
        {"a length beyond the end", record(4, 0xffffffff, "x")},
        {"an unknown record", record(77, 0, "")},
        {"an unknown kind", record(1, 2, {4, 0})},
        {"a value without its fact", record(3, 1, "x")},
        {"too many facts", facts},
        {"a text that is too long", record(4, 300'000, std::string(300'000, 'x'))},
        {"a picture without pixels", record(8, 8, size(10, 10))},
        {"a picture larger than it was asked for",
         record(8, 8 + 404, size(101, 1) + std::string(404, ' '))},
        {"a picture of no size", record(8, 8, size(0, 5))},
        {"sizes whose product wraps", record(8, 8, size(0x80000000, 2))},
        {"a picture that is promised only", record(1, 2, {2, 0})},
    };
    for (const auto& [what, bytes] : cases) EXPECT_FALSE(decode(bytes + end)) << what;
    EXPECT_TRUE(decode(record(8, 8 + 400, size(1, 100) + std::string(400, ' ')) + end));
    EXPECT_TRUE(decode(end));
}
