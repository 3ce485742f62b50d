#include <QCursor>
#include <QTemporaryFile>
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
    int moves = 0;
    void windowDidBecomeKey() override {}
    void windowDidMove() override { moves++; }
    void windowDidResize() override {}
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

}  // namespace
