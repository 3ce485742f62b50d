#include "views/SearchWindow.h"

#include <QCloseEvent>
#include <QScreen>

#include "views/QtTest.h"

namespace {

struct Listener : WindowViewDelegate {
    int closes = 0;
    void windowDidBecomeKey() override {}
    void windowDidResignKey() override {}
    void windowWillClose() override { closes++; }
};

}  // namespace

using SearchWindowTest = QtTest;

TEST_F(SearchWindowTest, PlacesCountFromTheBottomOfTheScreen) {
    for (const bool composited : {false, true}) {
        WindowSystem system;
        system.isComposited = [=] { return composited; };
        SearchWindow window(system);
        const Rect screen = window.screenFrame();
        EXPECT_EQ(screen.height, QGuiApplication::primaryScreen()->geometry().height());
        const Rect place{30, 200, 638, 64};
        window.setFrame(place, false);
        EXPECT_EQ(window.frame(), place);
        // The sheet's upper edge, with or without a shadow around it.
        const QWidget* field = window.widget()->findChild<QWidget*>();
        EXPECT_EQ(field->mapToGlobal(QPoint(0, 0)).y(), int(screen.height - 200 - 64));
        window.setFrame({30, 151, 638, 113}, true);  // higher, the upper edge where it was
        EXPECT_EQ(window.frame(), (Rect{30, 151, 638, 113}));
    }
}

TEST_F(SearchWindowTest, IsActiveAsSoonAsItHasAskedForTheKeyboard) {
    std::vector<uintptr_t> asked;
    WindowSystem system;
    system.activate = [&](uintptr_t id) { asked.push_back(id); };
    SearchWindow window(system);
    EXPECT_FALSE(window.isActive());
    window.show();
    EXPECT_TRUE(window.isActive());
    EXPECT_EQ(asked, std::vector<uintptr_t>{window.widget()->winId()});
    window.hide();
    EXPECT_FALSE(window.isActive());
    EXPECT_FALSE(window.isVisible());
}

TEST_F(SearchWindowTest, ClosingIsForTheDelegateToDo) {
    SearchWindow window;
    Listener listener;
    window.setDelegate(&listener);
    window.show();
    EXPECT_FALSE(window.widget()->close());
    EXPECT_EQ(listener.closes, 1);
    EXPECT_TRUE(window.isVisible());
}

TEST_F(SearchWindowTest, TheNativeWindowHasRoomForAFullListAndLetsClicksThroughIt) {
    QRect clicks;
    WindowSystem system;
    system.isComposited = [] { return true; };
    system.takeClicksIn = [&](uintptr_t, QRect part) { clicks = part; };
    SearchWindow window(system);
    const double top = window.screenFrame().height - 20;
    window.setFrame({30, top - 64, 638, 64}, false);
    window.show();
    const QSize native = window.widget()->size();
    EXPECT_EQ(clicks.size(), QSize(638, 64));
    window.setFrame({30, top - 211, 638, 211}, false);
    EXPECT_EQ(clicks.size(), QSize(638, 211));
    EXPECT_EQ(window.widget()->size(), native);
    EXPECT_TRUE(window.widget()->rect().contains(clicks));
    // More than a full list: it has to grow.
    window.setFrame({30, top - 700, 638, 700}, false);
    EXPECT_GT(window.widget()->height(), 700);
    EXPECT_EQ(window.frame(), (Rect{30, top - 700, 638, 700}));
}
