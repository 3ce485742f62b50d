#include "views/QuitProgress.h"

#include <QElapsedTimer>
#include <QThread>
#include <QVariantAnimation>

#include "views/QtTest.h"

class QuitProgressTest : public QtTest {
  protected:
    static bool within(int milliseconds, const std::function<bool()>& holds) {
        QElapsedTimer timer;
        timer.start();
        while (!holds() && timer.elapsed() < milliseconds) {
            QCoreApplication::processEvents();
            QThread::msleep(5);
        }
        return holds();
    }
};

TEST_F(QuitProgressTest, FadesInFillsAndFadesOut) {
    QuitProgress view;
    EXPECT_FALSE(view.isVisible());
    view.show();
    EXPECT_TRUE(view.isVisible());
    EXPECT_LT(view.widget()->windowOpacity(), 0.5);
    EXPECT_TRUE(within(5000, [&] { return view.widget()->windowOpacity() == 1; }));
    EXPECT_TRUE(view.widget()->testAttribute(Qt::WA_ShowWithoutActivating));
    const QImage empty = view.widget()->grab().toImage();
    view.setProgress(0.5);
    const QImage half = view.widget()->grab().toImage();
    EXPECT_NE(half, empty);
    view.setProgress(7);
    EXPECT_NE(view.widget()->grab().toImage(), half);

    view.fadeOut();
    EXPECT_FALSE(view.isVisible());
    view.show();  // before it has gone
    EXPECT_TRUE(view.isVisible());
    EXPECT_TRUE(within(5000, [&] { return view.widget()->windowOpacity() == 1; }));
    EXPECT_EQ(view.widget()->grab().toImage(), empty);
    view.fadeOut();
    EXPECT_TRUE(within(5000, [&] { return !view.widget()->isVisible(); }));
    view.show();
    view.hide();
    EXPECT_FALSE(view.isVisible());
    EXPECT_FALSE(view.widget()->isVisible());
    // Qt's clock of animations outlives the application: it has to come to rest in this one, or it
    // stands still in the tests to come.
    QVariantAnimation last;
    last.setDuration(20);
    last.start();
    EXPECT_TRUE(within(5000, [&] { return last.state() == QAbstractAnimation::Stopped; }));
    for (int turn = 0; turn < 10; ++turn) QCoreApplication::processEvents();
}

TEST_F(QuitProgressTest, ComesAndGoesAtOnceWhereMotionIsUnwanted) {
    QuitProgress view(WindowSystem{.look = [] { return DesktopLook{.lessMotion = true}; }});
    view.show();
    EXPECT_EQ(view.widget()->windowOpacity(), 1);
    view.fadeOut();
    EXPECT_FALSE(view.widget()->isVisible());
    view.show();
    EXPECT_EQ(view.widget()->windowOpacity(), 1);
}
