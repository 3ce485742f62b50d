#include "views/IconCache.h"

#include <QIcon>
#include <QImageReader>
#include <QPainter>
#include <set>

#include "support/TemporaryFolder.h"
#include "views/ActionSymbols.h"
#include "views/ProgramIcon.h"
#include "views/QtTest.h"

class IconCacheTest : public QtTest {};

TEST_F(IconCacheTest, HasAPictureForEveryKindWithoutAnIconTheme) {
    QIcon::setThemeName("a theme that nobody has");
    QIcon::setFallbackThemeName({});
    QIcon::setThemeSearchPaths({});
    IconCache icons;
    std::set<QByteArray> pictures;
    const char* const kinds[] = {
        "folder",     "image-png", "text-plain",   "application-zip", "application-x-executable",
        "audio-mpeg", "video-mp4", "no-such-thing"};
    for (const char* kind : kinds) {
        const QImage picture = icons.pixmap(kind, 32, 2).toImage();
        EXPECT_EQ(picture.size(), QSize(64, 64)) << kind;
        pictures.insert(
            QByteArray(reinterpret_cast<const char*>(picture.constBits()), picture.sizeInBytes()));
    }
    EXPECT_EQ(pictures.size(), std::size(kinds));  // each tells its kind
    // A type that has no drawing of its own has that of its family.
    EXPECT_EQ(icons.pixmap("image-x-portable-pixmap", 32, 2).toImage(),
              icons.pixmap("image-png", 32, 2).toImage());
    EXPECT_EQ(icons.pixmap("", 32, 1).toImage(), icons.pixmap("no-such-thing", 32, 1).toImage());
}

TEST_F(IconCacheTest, WhoeverPaintsGetsTheDrawingFirstAndTheThemesPictureLater) {
    const TemporaryFolder folder;
    folder.file("theme/index.theme",
                "[Icon Theme]\nName=theme\nDirectories=a\n[a]\nSize=32\nType=Fixed\n");
    folder.folder("theme/a");
    QImage blue(32, 32, QImage::Format_ARGB32_Premultiplied);
    blue.fill(Qt::blue);
    for (const char* name : {"text-plain.png", "folder.png"})
        ASSERT_TRUE(blue.save(folder.at("theme/a").appending(name).c_str()));
    QIcon::setThemeSearchPaths({folder.url().c_str()});
    QIcon::setThemeName("theme");
    IconCache icons;
    int loaded = 0;
    icons.setLoadedBlock([&] { loaded++; });
    const auto isBlue = [&](const char* name) {
        return icons.pixmapAtOnce(name, 32, 1).toImage().pixelColor(16, 16) == Qt::blue;
    };
    EXPECT_FALSE(isBlue("text-plain"));
    EXPECT_FALSE(isBlue("folder"));
    EXPECT_FALSE(isBlue("image-png"));
    for (int turn = 0; turn < 100 && loaded < 2; ++turn)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    EXPECT_TRUE(isBlue("text-plain"));
    EXPECT_TRUE(isBlue("folder"));
    EXPECT_FALSE(isBlue("image-png")) << "the theme has none";
    QIcon::setThemeSearchPaths({});
}

TEST_F(IconCacheTest, EachActionHasASymbolOfItsOwnWithinItsSquare) {
    constexpr int kFrame = 2, kSide = 32 + 2 * kFrame;
    std::set<QByteArray> pictures;
    for (int i = 0; i <= int(RowAction::Symbol::userAction); ++i) {
        QImage picture(kSide, kSide, QImage::Format_ARGB32_Premultiplied);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        ActionSymbols::draw(painter, QRectF(kFrame, kFrame, 32, 32), RowAction::Symbol(i),
                            Qt::black);
        painter.end();
        for (int at = 0; at < kSide; ++at) {
            EXPECT_EQ(qAlpha(picture.pixel(at, 0)) + qAlpha(picture.pixel(0, at)), 0) << i;
            EXPECT_EQ(qAlpha(picture.pixel(at, kSide - 1)) + qAlpha(picture.pixel(kSide - 1, at)),
                      0)
                << i;
        }
        pictures.insert(
            QByteArray(reinterpret_cast<const char*>(picture.constBits()), picture.sizeInBytes()));
    }
    EXPECT_EQ(pictures.size(), size_t(RowAction::Symbol::userAction) + 1);
}

TEST_F(IconCacheTest, TheProgramsSignIsSeenOnEveryGround) {
    for (const int size : {16, 22, 64}) {
        const QImage sign = programIcon().pixmap(size, size).toImage();
        ASSERT_EQ(sign.size(), QSize(size, size));
        EXPECT_EQ(sign.pixelColor(0, 0).alpha(), 0);
        int light = 0, dark = 0;
        for (int y = 0; y < size; ++y)
            for (int x = 0; x < size; ++x) {
                const QColor colour = sign.pixelColor(x, y);
                if (colour.alpha() < 200) continue;
                (colour.lightness() > 200 ? light : dark)++;
            }
        EXPECT_GT(light, size * size / 20) << size;
        EXPECT_GT(dark, size * size / 3) << size;
    }
}

TEST_F(IconCacheTest, TheProgramsSignIsTheIconThatIsInstalled) {
    constexpr int kSize = 128;
    QImageReader reader(QStringLiteral(TROVAST_ICON));
    if (!reader.canRead()) GTEST_SKIP() << "no reader for SVG: libqt6svg6 is missing";
    const QImage installed = reader.read().convertToFormat(QImage::Format_ARGB32_Premultiplied);
    const QImage drawn = programIcon()
                             .pixmap(kSize, kSize)
                             .toImage()
                             .convertToFormat(QImage::Format_ARGB32_Premultiplied);
    ASSERT_EQ(installed.size(), drawn.size());
    int different = 0;
    for (int y = 0; y < kSize; ++y)
        for (int x = 0; x < kSize; ++x) {
            const QRgb a = installed.pixel(x, y), b = drawn.pixel(x, y);
            const int difference = std::abs(qRed(a) - qRed(b)) + std::abs(qBlue(a) - qBlue(b)) +
                                   std::abs(qAlpha(a) - qAlpha(b));
            if (difference > 30) different++;
        }
    EXPECT_LT(different, kSize * kSize / 500);  // but for the edges' smoothing
}
