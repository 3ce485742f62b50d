#include "views/InfoBar.h"

#include <QElapsedTimer>
#include <QThread>

#include "views/QtTest.h"
#include "views/Theme.h"

namespace {

constexpr int kWidth = 400;

class InfoBarTest : public QtTest {
  protected:
    InfoBarTest() {
        bar.setTheme(&theme);
        bar.resize(kWidth, InfoBar::kHeight);
        bar.show();
    }
    QImage picture() { return bar.grab().toImage(); }
    /// Whether something is painted between two columns.
    static bool hasInk(const QImage& image, int left, int right) {
        for (int y = 0; y < image.height(); ++y)
            for (int x = left; x < right; ++x)
                if (image.pixel(x, y) != image.pixel(0, 0)) return true;
        return false;
    }
    void wait(int milliseconds) {
        QElapsedTimer timer;
        timer.start();
        while (timer.elapsed() < milliseconds) {
            QCoreApplication::processEvents();
            QThread::msleep(5);
        }
    }
    bool hasRing() { return hasInk(picture(), kWidth - 30, kWidth); }

    const Theme theme = Theme::make(Theme::kOwnHue, false, QFont());
    InfoBar bar;
};

}  // namespace

TEST_F(InfoBarTest, TheRingIsForWhatTakesLongerThanAMoment) {
    bar.setSearching(true);
    wait(100);
    EXPECT_FALSE(hasRing());
    bar.setScanning(true);  // the moment is that of the first
    wait(150);
    EXPECT_TRUE(hasRing());
    bar.setSearching(false);
    EXPECT_TRUE(hasRing());
    bar.setScanning(false);
    EXPECT_FALSE(hasRing());
    bar.setSearching(true);
    wait(50);
    bar.setSearching(false);
    wait(200);
    EXPECT_FALSE(hasRing());
}

TEST_F(InfoBarTest, TheEndIsLeftToButtonsAndTheTextIsPlain) {
    bar.setText(std::string(300, 'm'));
    EXPECT_TRUE(hasInk(picture(), kWidth - 60, kWidth));
    bar.setInset(63);
    EXPECT_FALSE(hasInk(picture(), kWidth - 62, kWidth));
    EXPECT_TRUE(hasInk(picture(), 16, kWidth - 63));
    bar.setText("<b></b>");
    EXPECT_TRUE(hasInk(picture(), 16, kWidth - 63));  // not taken for markup
}

TEST_F(InfoBarTest, AMessageStandsOverTheTextAndMovesIfItIsTooLong) {
    bar.setText("text");
    const QImage text = picture();
    bar.setMarquee("short");
    const QImage still = picture();
    EXPECT_NE(still, text);
    wait(300);
    EXPECT_EQ(picture(), still);
    bar.setMarquee(std::string(200, 'm') + " end");
    const QImage beginning = picture();
    for (int i = 0; i < 60 && picture() == beginning; ++i) wait(50);
    EXPECT_NE(picture(), beginning);
    bar.setMarquee(std::nullopt);
    EXPECT_EQ(picture(), text);
}
