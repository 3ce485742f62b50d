#include "views/PreviewPanel.h"

#include <map>

#include "views/QtTest.h"
#include "views/SearchWindow.h"

using PreviewPanelTest = QtTest;

TEST_F(PreviewPanelTest, StandsOnTheSideWithMoreRoomAndOnTheScreen) {
    const QRect screen(100, 0, 1280, 800);
    const struct {
        QRect sheet, place;
    } cases[] = {
        {{140, 50, 638, 64}, {788, 50, 440, 520}},   {{700, 50, 638, 64}, {250, 50, 440, 520}},
        {{420, 50, 638, 64}, {1068, 50, 302, 520}},  {{140, 600, 638, 64}, {788, 269, 440, 520}},
        {{110, 50, 1260, 64}, {1120, 50, 260, 520}},
    };
    for (const auto& each : cases)
        EXPECT_EQ(PreviewPanel::placeBeside(each.sheet, screen), each.place) << each.sheet.x();
}

TEST_F(PreviewPanelTest, LeavesTheKeyboardWhereItIsAndFollowsTheWindow) {
    SearchWindow window;
    window.setFrame({40, 700, 638, 64}, false);
    window.show();
    PreviewView& preview = window.preview();
    preview.setContent({.kind = PreviewContent::Kind::text,
                        .iconName = "text-plain",
                        .name = "a\nb",
                        .text = "<b>plain</b>",
                        .facts = {{"Size", "3"}},
                        .message = "cut"});
    preview.show();
    QWidget* panel = nullptr;
    for (QWidget* each : QApplication::topLevelWidgets())
        if (each->objectName() == "previewPanel") panel = each;
    ASSERT_TRUE(panel);
    EXPECT_TRUE(panel->windowFlags() & Qt::WindowDoesNotAcceptFocus);
    for (const QWidget* child : panel->findChildren<QWidget*>())
        EXPECT_EQ(child->focusPolicy(), Qt::NoFocus);
    EXPECT_EQ(panel->findChild<QPlainTextEdit*>()->toPlainText(), "<b>plain</b>");
    const QPoint before = panel->pos();
    window.setFrame({40, 680, 638, 64}, false);
    EXPECT_EQ(panel->pos() - before, QPoint(0, 20));
    preview.hide();
    EXPECT_FALSE(preview.isVisible());
}

TEST_F(PreviewPanelTest, ClicksBesideItsSheetPassWhateverSizeItGets) {
    std::map<uintptr_t, QRect> clicks;
    bool isComposited = true;
    WindowSystem system;
    system.isComposited = [&] { return isComposited; };
    system.takeClicksIn = [&](uintptr_t window, QRect part) { clicks[window] = part; };
    SearchWindow window(system);
    window.setFrame({40, 700, 400, 64}, false);
    window.show();
    PreviewView& preview = window.preview();
    preview.show();
    const QWidget* panel = nullptr;
    for (const QWidget* each : QApplication::topLevelWidgets())
        if (each->objectName() == "previewPanel") panel = each;
    ASSERT_TRUE(panel);
    const WId id = panel->winId();
    const QRect before = clicks.at(id);
    EXPECT_LT(before.width(), panel->width());
    window.setFrame({40, 700, 340, 64}, false);
    EXPECT_EQ(clicks.at(id), before.adjusted(0, 0, 60, 0));
    preview.hide();
    isComposited = false;
    preview.show();
    EXPECT_EQ(clicks.at(id), QRect()) << "without a shadow all of them are its own";
}
