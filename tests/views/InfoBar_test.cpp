#include "views/InfoBar.h"

#include <QAbstractButton>
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
    bar.setMarquee(StyledText{{"short"}});
    const QImage still = picture();
    EXPECT_NE(still, text);
    wait(300);
    EXPECT_EQ(picture(), still);
    bar.setMarquee(StyledText{{std::string(200, 'm')}, {" end", StyledSpan::Look::token}});
    const QImage beginning = picture();
    for (int i = 0; i < 60 && picture() == beginning; ++i) wait(50);
    EXPECT_NE(picture(), beginning);
    bar.setMarquee(std::nullopt);
    EXPECT_EQ(picture(), text);
}

TEST_F(InfoBarTest, ButtonsTakeTheirRoomFromTheTextAndTellOfClicks) {
    struct Listener : IndicatorsViewDelegate {
        std::vector<IndicatorButton> clicked;
        void indicatorClicked(IndicatorButton button) override { clicked.push_back(button); }
    } listener;
    auto& row = *childrenOf<IndicatorRow>(bar).front();
    row.setDelegate(&listener);
    EXPECT_TRUE(row.buttons().empty());
    row.setIndicator(IndicatorButton::showFolders, {.isShown = true, .isOn = true});
    row.setIndicator(IndicatorButton::showFiles, {.isShown = true, .toolTip = "<b>Show Files"});
    ASSERT_EQ(row.buttons().size(), 2u);
    EXPECT_LT(row.buttons()[0]->x(), row.buttons()[1]->x());
    EXPECT_EQ(row.buttons()[0]->accessibleName(), "<b>Show Files");
    const QImage both = picture();
    EXPECT_TRUE(hasInk(both, kWidth - 12 - 34, kWidth - 12 - 17));
    bar.setText(std::string(300, 'm'));
    EXPECT_FALSE(hasInk(picture(), kWidth - 12 - 34 - 1, kWidth - 12 - 34));
    qobject_cast<QAbstractButton*>(row.buttons()[0])->click();
    EXPECT_EQ(listener.clicked, std::vector{IndicatorButton::showFiles});
    row.setIndicator(IndicatorButton::enableMetadata, {.isShown = true});
    EXPECT_GT(row.buttons()[0]->width(), 60);
    EXPECT_EQ(row.geometry().right(), kWidth - 12 - 1);
    row.setDelegate(nullptr);
}
