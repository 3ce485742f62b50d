#include "platform/linux/LinuxPreviews.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QImage>
#include <optional>
#include <thread>

#include "support/TemporaryFolder.h"
#include "util/World.h"

namespace {

using namespace std::chrono_literals;
using Kind = Preview::Kind;

std::string bigEndian(uint32_t number) {
    return {char(number >> 24), char(number >> 16), char(number >> 8), char(number)};
}

/// The head of a picture of that size; its checksum is right.
std::string pngHead(uint32_t width, uint32_t height) {
    const std::string chunk =
        "IHDR" + bigEndian(width) + bigEndian(height) + std::string("\x08\x06\0\0\0", 5);
    uint32_t sum = ~0U;
    for (const char c : chunk) {
        sum ^= static_cast<unsigned char>(c);
        for (int bit = 0; bit < 8; bit++) sum = (sum >> 1) ^ (sum & 1 ? 0xEDB88320U : 0);
    }
    return "\x89PNG\r\n\x1a\n" + bigEndian(13) + chunk + bigEndian(~sum) + bigEndian(100) + "IDATx";
}

class LinuxPreviewsTest : public testing::Test {
  protected:
    Preview previewOf(const FileURL& url) {
        std::optional<Preview> answer;
        const auto began = std::chrono::steady_clock::now();
        previews_.request({.url = url, .pixels = 300}, [&](const Preview& p) { answer = p; });
        while (!answer && std::chrono::steady_clock::now() - began < 20s) {
            world_.mainQueue().runPending();
            std::this_thread::sleep_for(1ms);
        }
        EXPECT_TRUE(answer) << url.path();
        return answer.value_or(Preview{});
    }
    static std::string fact(const Preview& preview, std::string_view name) {
        for (const auto& fact : preview.facts)
            if (fact.name == name) return fact.value;
        return {};
    }

    TemporaryFolder folder_;
    World world_;
    LinuxPreviews previews_{TROVAST_PREVIEW};
};

}  // namespace

TEST_F(LinuxPreviewsTest, HostileAndOddFilesGiveALine) {
    mkfifo(folder_.at("pipe").c_str(), 0600);
    folder_.link("broken", "nowhere");
    folder_.link("loop", "loop");
    folder_.file("empty");
    folder_.file("bomb.png", pngHead(50'000, 50'000));
    folder_.file("torn.png", pngHead(50, 50));
    folder_.file("torn.pdf", std::string("%PDF-1.7\n1 0 obj <</Type /Catalog \0", 35));
    folder_.file("torn.txt", "%PDF-1.7 %letters\n1 0 obj <</Type /Catalog >>\n");
    const std::string key(32, 'k');
    folder_.file("locked.pdf",
                 "%PDF-1.4\n1 0 obj <</Type/Catalog/Pages 2 0 R>> endobj\n"
                 "2 0 obj <</Type/Pages/Kids[]/Count 0>> endobj\n"
                 "trailer <</Root 1 0 R/ID[(id)(id)]/Encrypt <</Filter/Standard/V 1/R 2/P -4"
                 "/O(" +
                     key + ")/U(" + key + ")>> >>\n%%EOF\n");
    folder_.file("torn.mp4", std::string("\0\0\0\x18"
                                         "ftypmp42\0\0\0\0garbage",
                                         23));
    folder_.file("list.m3u8", "#EXTM3U\nhttp://localhost/a.ts\n");
    folder_.file("program.txt", std::string("\x7f"
                                            "ELF\2\1\1\0\0\0abc",
                                            13));
    truncate(folder_.file("huge.bin").c_str(), off_t{1} << 40);
    const struct {
        FileURL url;
        Kind kind;
        const char* message;  // its beginning
    } cases[] = {
        {folder_.at("pipe"), Kind::properties, "A named pipe"},
        {FileURL("/dev/zero"), Kind::properties, "A device."},
        {folder_.at("broken"), Kind::properties, "The link leads nowhere."},
        {folder_.at("loop"), Kind::properties, "The link leads nowhere."},
        {folder_.at("vanished"), Kind::properties, "It is no longer there."},
        {FileURL("/" + std::string(5000, 'x')), Kind::properties, "It cannot be read"},
        {folder_.at("empty"), Kind::properties, "The file is empty."},
        {folder_.at("bomb.png"), Kind::properties, "The picture is too large"},
        {folder_.at("torn.png"), Kind::properties, "The picture cannot be read"},
        {folder_.at("torn.pdf"), Kind::properties, "The document cannot be read"},
        {folder_.at("torn.txt"), Kind::properties, "The document cannot be read"},
        {folder_.at("locked.pdf"), Kind::properties, "The document is locked by a password."},
        {folder_.at("torn.mp4"), Kind::properties, "The recording cannot be read"},
        {folder_.at("list.m3u8"), Kind::text, ""},
        {folder_.at("program.txt"), Kind::properties, ""},
        {folder_.at("huge.bin"), Kind::properties, ""},
    };
    for (const auto& each : cases) {
        const Preview preview = previewOf(each.url);
        EXPECT_EQ(preview.kind, each.kind) << each.url.path();
        EXPECT_EQ(preview.message.substr(0, std::strlen(each.message)), each.message);
    }
    EXPECT_EQ(fact(previewOf(folder_.at("bomb.png")), "Dimensions"), "50000 × 50000");
    EXPECT_EQ(fact(previewOf(folder_.at("broken")), "Link to"), "nowhere");
}

TEST_F(LinuxPreviewsTest, TextsInTheirCodesAndTheirBeginning) {
    const std::pair<std::string, std::string> cases[] = {
        {"plain\r\n\ttext\n", "plain\n\ttext\n"},
        {"Viele Gr\xfc\xdf\x65", "Viele Grüße"},
        {std::string("\xff\xfeh\0i\0", 6), "hi"},
        {"one \x1b[31m escape in a text that is long enough to be one, which takes a while", ""},
    };
    for (const auto& [bytes, text] : cases) {
        const Preview preview = previewOf(folder_.file("\xff name", bytes));
        EXPECT_EQ(preview.kind, Kind::text);
        if (!text.empty()) {
            EXPECT_EQ(preview.text, text);
        }
        EXPECT_EQ(preview.text.find('\x1b'), std::string::npos);
    }
    std::string large;
    while (large.size() < 200'000) large += "ü line\n";
    const Preview preview = previewOf(folder_.file("large", large));
    EXPECT_LT(preview.text.size(), 70'000u);
    EXPECT_EQ(preview.text.find("\xef\xbf\xbd"), std::string::npos) << "no letter is torn";
    EXPECT_EQ(preview.message.substr(0, 16), "The beginning of");
}

TEST_F(LinuxPreviewsTest, TextsThatBeginAsOtherFilesDo) {
    for (const char* text : {"FORMAT OF THE FILES\n", "FORM 8 AIFF", "ID3 tags", "RIFF raff",
                             "GIF8", "%PDF-1.4 is a mark", ".snd are sounds", "fLaC, a format"}) {
        const Preview preview = previewOf(folder_.file("README", text));
        EXPECT_EQ(preview.text, text);
        EXPECT_EQ(preview.message, "");
    }
    EXPECT_EQ(previewOf(folder_.file("empty.bmp")).message, "The file is empty.");
    const std::string sound(8, '\x7f');
    const std::pair<const char*, std::string> recordings[] = {
        {"a.wav",
         std::string("RIFF\x2c\0\0\0WAVEfmt \x10\0\0\0\1\0\1\0\x40\x1f\0\0\x40\x1f\0\0\1\0\x08\0"
                     "data\x08\0\0\0",
                     44)},
        {"a.aiff", std::string("FORM\0\0\0\x36"
                               "AIFFCOMM\0\0\0\x12\0\1\0\0\0\x08\0\x08"
                               "\x40\x0b\xfa\0\0\0\0\0\0\0SSND\0\0\0\x10\0\0\0\0\0\0\0\0",
                               54)},
    };
    for (const auto& [name, head] : recordings)
        EXPECT_NE(fact(previewOf(folder_.file(name, head + sound)), "Sound"), "") << name;
}

TEST_F(LinuxPreviewsTest, PicturesDocumentsAndFolders) {
    QImage image(1200, 600, QImage::Format_RGB32);
    image.fill(Qt::red);
    image.save(QString::fromStdString(folder_.at("sub/../red.png").path()));
    folder_.folder("list/B");
    folder_.file("list/a");
    folder_.file("list/.hidden");
    const FileURL red = folder_.at("red.png");
    image.save(QString::fromStdString(red.path()));
    const Preview picture = previewOf(red);
    ASSERT_TRUE(picture.picture);
    EXPECT_EQ(picture.picture->width, 300u);
    EXPECT_EQ(picture.picture->height, 150u);
    EXPECT_EQ(picture.picture->pixels[1000], 0xffff0000u);
    const Preview drawing =
        previewOf(folder_.file("d.svg",
                               "<svg xmlns='http://www.w3.org/2000/svg' width='10' height='10'>"
                               "<rect width='10' height='10' fill='blue'/><text>x</text></svg>"));
    ASSERT_TRUE(drawing.picture);
    EXPECT_EQ(drawing.picture->pixels[50 * 300 + 150], 0xff0000ffu);
    const Preview list = previewOf(folder_.at("list"));
    EXPECT_EQ(list.entries,
              (std::vector<Preview::Entry>{{"B", true}, {"a", false}, {".hidden", false}}));
    EXPECT_EQ(fact(list, "Items"), "3");
}

TEST_F(LinuxPreviewsTest, NewRequestTakesThePlaceOfTheOld) {
    const FileURL file = folder_.file("a", "text");
    int answers = 0;
    previews_.request({.url = file, .pixels = 10}, [&](const Preview&) { answers++; });
    EXPECT_EQ(previewOf(file).text, "text");
    EXPECT_EQ(answers, 0);
}
