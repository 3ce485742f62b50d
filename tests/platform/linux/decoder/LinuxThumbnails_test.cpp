#include "platform/linux/LinuxThumbnails.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QImage>
#include <thread>

#include "platform/linux/decoder/PreviewMessage.h"
#include "platform/linux/decoder/ThumbnailStore.h"
#include "support/TemporaryFolder.h"
#include "util/FileIO.h"
#include "util/World.h"

namespace {

using namespace std::chrono_literals;

class LinuxThumbnailsTest : public testing::Test {
  protected:
    std::shared_ptr<const Picture> thumbnailOf(const FileURL& url) {
        return thumbnailBy(thumbnails_, url);
    }
    std::shared_ptr<const Picture> thumbnailBy(LinuxThumbnails& thumbnails, const FileURL& url) {
        bool isAnswered = false;
        std::shared_ptr<const Picture> picture;
        thumbnails.request({url}, [&](const FileURL&, const auto& answer) {
            isAnswered = true;
            picture = answer;
        });
        for (int tries = 0; !isAnswered && tries < 10'000; tries++) {
            world_.mainQueue().runPending();
            std::this_thread::sleep_for(1ms);
        }
        EXPECT_TRUE(isAnswered);
        return picture;
    }
    void save(const FileURL& url, Qt::GlobalColor colour, std::time_t modified) {
        QImage image(400, 200, QImage::Format_RGB32);
        image.fill(colour);
        image.save(QString::fromStdString(url.path()), "png");
        setTime(url, modified);
    }
    static void setTime(const FileURL& url, std::time_t modified) {
        const timespec times[] = {{modified, 0}, {modified, 0}};
        utimensat(AT_FDCWD, url.c_str(), times, 0);
    }
    FileURL stored(const char* folder, const FileURL& url) const {
        return store_.appending(folder).appending(
            thumbnailStore::nameOf(thumbnailStore::uriOf(url.path())));
    }
    static bool exists(const FileURL& url) { return access(url.c_str(), F_OK) == 0; }
    static uint32_t colourOf(const std::shared_ptr<const Picture>& picture) {
        return picture ? picture->pixels[0] : 0;
    }

    TemporaryFolder folder_;
    const FileURL store_ = folder_.at("cache/thumbnails");
    World world_;
    LinuxThumbnails thumbnails_{store_.path(), TROVAST_PREVIEW};
};

constexpr uint32_t kRed = 0xffff0000, kGreen = 0xff00ff00;

}  // namespace

TEST(ThumbnailStore, NamesAreThoseOfTheOtherPrograms) {
    const std::string uri = thumbnailStore::uriOf("/home/jens/photos/me.png");
    EXPECT_EQ(thumbnailStore::nameOf(uri), "c6ee772d9e49320e97ec29a7eb5b1697.png");
    EXPECT_EQ(thumbnailStore::uriOf("/a b#%\xff;(1)~.png"), "file:///a%20b%23%25%FF%3B(1)~.png");
}

TEST_F(LinuxThumbnailsTest, StoreIsSharedWhileTheFileIsAsItWas) {
    folder_.folder("cache");
    const FileURL file = folder_.at("a b.png");
    save(file, Qt::red, 1'000'000);
    EXPECT_EQ(colourOf(thumbnailOf(file)), kRed);

    const FileURL entry = stored("normal", file);
    struct stat info {};
    ASSERT_EQ(stat(entry.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0600u);
    ASSERT_EQ(stat(store_.appending("normal").c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0700u);
    QImage image(QString::fromStdString(entry.path()));
    EXPECT_EQ(image.size(), QSize(128, 64));
    EXPECT_EQ(image.text("Thumb::MTime"), "1000000");
    EXPECT_EQ(image.text("Thumb::URI").toStdString(), thumbnailStore::uriOf(file.path()));

    image.fill(Qt::green);  // as another program would have made it
    image.save(QString::fromStdString(entry.path()), "png");
    EXPECT_EQ(colourOf(thumbnailOf(file)), kGreen);
    setTime(file, 1'000'001);
    EXPECT_EQ(colourOf(thumbnailOf(file)), kRed) << "the file is another one now";
    image.setText("Thumb::URI", "file:///other");
    image.setText("Thumb::MTime", "1000001");
    image.save(QString::fromStdString(entry.path()), "png");
    EXPECT_EQ(colourOf(thumbnailOf(file)), kRed) << "of another file with the same name";
}

TEST_F(LinuxThumbnailsTest, FailureIsRememberedUntilTheFileChanges) {
    const FileURL file = folder_.file("a.png", "\x89PNG\r\n\x1a\n torn");
    setTime(file, 1'000'000);
    EXPECT_EQ(thumbnailOf(file), nullptr);
    EXPECT_TRUE(exists(stored("fail/trovast", file)));
    save(file, Qt::red, 1'000'000);
    EXPECT_EQ(thumbnailOf(file), nullptr) << "it was not to be tried again";
    setTime(file, 1'000'002);
    EXPECT_EQ(colourOf(thumbnailOf(file)), kRed);
}

TEST_F(LinuxThumbnailsTest, TroubleThatMayPassIsNotRemembered) {
    const FileURL file = folder_.file("a.pdf", "%PDF-1.7 torn");
    const auto resultOf = [&](const FileURL& program) {
        chmod(program.c_str(), 0700);
        LinuxThumbnails thumbnails(store_.path(), program.path());
        EXPECT_EQ(thumbnailBy(thumbnails, file), nullptr);
        return exists(stored("fail/trovast", file));
    };
    const auto whole = readFile(FileURL(TROVAST_PREVIEW), size_t{1} << 30);
    ASSERT_TRUE(whole);
    EXPECT_FALSE(resultOf(folder_.file("bare/decoder", whole.value().bytes)))
        << "no module beside it";
    Preview head;
    head.facts = {{"Source", "file"}, {"MTime", "5"}};
    const FileURL said = folder_.file("head", previewMessage::encode(head));
    const auto thatThen = [&](const char* name, const char* command) {
        return folder_.file(name, "#!/bin/sh\ncat '" + said.path() + "'\n" + command + "\n");
    };
    EXPECT_FALSE(resultOf(thatThen("late", "exec >&- sleep 60")));
    EXPECT_TRUE(resultOf(thatThen("busy", "kill -XCPU $$")));
}

TEST_F(LinuxThumbnailsTest, OthersHaveNone) {
    EXPECT_EQ(thumbnailOf(folder_.file("a.txt", "text")), nullptr);
    EXPECT_FALSE(exists(stored("fail/trovast", folder_.at("a.txt"))));
    folder_.folder("cache/thumbnails/normal");
    const FileURL thumbnail = store_.appending("normal/x.png");
    save(thumbnail, Qt::red, 5);
    EXPECT_EQ(thumbnailOf(thumbnail), nullptr) << "of thumbnails there are none";
    EXPECT_EQ(thumbnailOf(folder_.at("vanished.png")), nullptr);
}
