#include <QCursor>
#include <QElapsedTimer>
#include <QScreen>
#include <QTemporaryFile>
#include <QThread>
#include <QWindow>

#include "views/AlertWindow.h"
#include "views/QtTest.h"
#include "views/SearchWindow.h"

namespace {

/// The primary screen, the first by name, and a smaller one at its left.
constexpr const char* kScreens = R"({"screens": [
    {"name": "A", "x": 1280, "y": 0, "width": 1920, "height": 1080},
    {"name": "B", "x": 0, "y": 0, "width": 1280, "height": 800}]})";

struct ScreensFile {
    ScreensFile() {
        file.open();
        file.write(kScreens);
        file.close();
    }
    QTemporaryFile file;
};

class ScreensTest : ScreensFile, public QtTest {
  protected:
    ScreensTest() : QtTest("offscreen:configfile=" + file.fileName().toLocal8Bit()) {}
};

struct Listener : WindowViewDelegate {
    int moves = 0, resizes = 0;
    void windowDidBecomeKey() override {}
    void windowDidMove() override { moves++; }
    void windowDidResize() override { resizes++; }
    void windowWillClose() override {}
    void stickyButtonClicked() override {}
};

TEST_F(ScreensTest, PlacesCountFromThePrimaryScreensCorner) {
    SearchWindow window;
    window.setFrame({100, 200, 638, 64}, false);
    EXPECT_EQ(window.frame(), (Rect{100, 200, 638, 64}));
    EXPECT_EQ(window.sheetPlace(), QRect(1380, 816, 638, 64));
    window.show();
    EXPECT_EQ(window.screenFrame(), (Rect{0, 0, 1920, 1080}));
    window.setFrame({-1000, 900, 638, 64}, false);
    EXPECT_EQ(window.screenFrame(), (Rect{-1280, 280, 1280, 800}));
    EXPECT_EQ(window.visibleScreenFrameFor({-100, 900, 638, 64}), (Rect{0, 0, 1920, 1080}));
}

TEST_F(ScreensTest, OurOtherWindowsComeWhereTheKeyboardIs) {
    SearchWindow window;
    window.setFrame({-1000, 900, 638, 64}, false);
    window.show();
    window.widget()->windowHandle()->requestActivate();
    QApplication::processEvents();
    QCursor::setPos(2000, 500);
    QApplication::processEvents();
    AlertWindow alert({}, Alert{.title = "Title"}, [](size_t) {});
    alert.showCentred(SheetWindow::Keyboard::asked);
    EXPECT_TRUE(QRect(0, 0, 1280, 800).contains(alert.geometry())) << alert.x();
}

TEST_F(ScreensTest, AsksOnceMoreForItsPlaceWhereItComesUpElsewhere) {
    SearchWindow window;
    window.setFrame({100, 500, 638, 64}, false);
    Listener listener;
    window.setDelegate(&listener);
    window.show();
    QApplication::processEvents();
    QWindow& native = *window.widget()->windowHandle();
    window.hide();
    window.show();  // all is made already: what comes next comes soon
    // By the window manager: first it counts a title bar in, later the user takes a key of its own.
    native.setPosition(native.position() + QPoint(2, 18));
    QApplication::processEvents();
    EXPECT_EQ(window.frame(), (Rect{100, 500, 638, 64}));
    EXPECT_EQ(listener.moves, 0);
    native.setPosition(native.position() + QPoint(40, 0));
    QApplication::processEvents();
    EXPECT_EQ(window.frame(), (Rect{140, 500, 638, 64}));
    EXPECT_EQ(listener.moves, 1);
}

TEST_F(ScreensTest, WhileMonitorsComeAndGoOthersDoNotMoveItForLong) {
    SearchWindow window;
    window.setFrame({100, 500, 638, 64}, false);
    window.show();
    QApplication::processEvents();
    QWindow& native = *window.widget()->windowHandle();
    const auto pushed = [&] {
        native.setPosition(native.position() + QPoint(70, 90));
        QApplication::processEvents();
    };
    pushed();
    const Rect left = window.frame();
    EXPECT_EQ(left.x, 170);
    Listener listener;
    window.setDelegate(&listener);
    QScreen& screen = *QGuiApplication::primaryScreen();
    Q_EMIT screen.geometryChanged(screen.geometry());
    pushed();
    EXPECT_EQ(window.frame(), left);
    // A letter is typed: the list makes it higher.
    window.setFrame({left.x, left.y - 49, left.width, left.height + 49}, false);
    EXPECT_EQ(listener.resizes, 1);
    const QRect place = window.sheetPlace();
    pushed();
    EXPECT_NE(window.sheetPlace(), place);
    QElapsedTimer timer;
    for (timer.start(); window.sheetPlace() != place && timer.elapsed() < 10000;) {
        QApplication::processEvents();
        QThread::msleep(5);
    }
    EXPECT_EQ(window.sheetPlace(), place);
    EXPECT_EQ(listener.moves, 0);
    pushed();
    EXPECT_EQ(listener.moves, 1);
}

TEST_F(ScreensTest, OnAnotherScreenTheClicksThroughItAreCountedAnew) {
    int times = 0;
    SearchWindow window(WindowSystem{.takeClicksIn = [&](uintptr_t, QRect) { times++; }});
    window.show();
    QApplication::processEvents();
    const int before = times;
    QWindow& native = *window.widget()->windowHandle();
    Q_EMIT native.screenChanged(native.screen());
    EXPECT_EQ(times, before + 1);
}

}  // namespace
