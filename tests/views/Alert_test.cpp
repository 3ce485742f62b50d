#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QTimer>
#include <functional>

#include "views/AlertDialogs.h"
#include "views/AlertWindow.h"
#include "views/QtTest.h"

namespace {

class AlertTest : public QtTest {
  protected:
    /// Runs the question; user is called once it stands.
    AlertAnswer ask(const Alert& alert, std::function<void(AlertWindow&)> user) {
        AlertDialogs dialogs;
        QTimer::singleShot(0, [&] {
            auto* const window = dynamic_cast<AlertWindow*>(QApplication::activeModalWidget());
            ASSERT_NE(window, nullptr);
            user(*window);
        });
        return dialogs.runModal(alert);
    }
    static void press(QWidget& widget, int key) {
        QKeyEvent event(QEvent::KeyPress, key, {});
        QCoreApplication::sendEvent(&widget, &event);
    }
    static QWidget& focused(AlertWindow& window) {
        return window.focusWidget() ? *window.focusWidget() : window;
    }
    static SheetButton& button(AlertWindow& window, const char* text) {
        for (SheetButton* each : childrenOf<SheetButton>(window))
            if (each->text() == text) return *each;
        throw std::runtime_error(text);
    }

    const Alert three{.title = "Title",
                      .text = "One\nTwo <b>bold</b> & more",
                      .buttons = {"First", "Second & <i>", "Third"}};
};

}  // namespace

TEST_F(AlertTest, ReturnTakesTheFirstButtonAndEscapeItsOwn) {
    const auto key = [&](int k) { return [k](AlertWindow& window) { press(focused(window), k); }; };
    EXPECT_EQ(ask(three, key(Qt::Key_Return)).button, 0u);
    EXPECT_EQ(ask(three, key(Qt::Key_Enter)).button, 0u);
    EXPECT_EQ(ask(three, key(Qt::Key_Escape)).button, 2u);
    Alert alert = three;
    alert.buttonOfEscape = 1;
    EXPECT_EQ(ask(alert, key(Qt::Key_Escape)).button, 1u);
    EXPECT_EQ(ask(alert, [](AlertWindow& window) { window.close(); }).button, 1u);
    alert.buttonOfSpace = 1;
    EXPECT_EQ(ask(alert, key(Qt::Key_Space)).button, 1u);
    alert.buttons.clear();  // one that cannot be left would be a trap
    alert.buttonOfEscape.reset();
    EXPECT_EQ(ask(alert, key(Qt::Key_Return)).button, 0u);
}

TEST_F(AlertTest, ShowsItsTextsAsTheyAre) {
    Alert alert = three;
    alert.suppression = "Do not ask && again";
    const AlertAnswer answer = ask(alert, [](AlertWindow& window) {
        QStringList texts;
        for (const QLabel* label : childrenOf<QLabel>(window)) {
            EXPECT_EQ(label->textFormat(), Qt::PlainText);
            texts << label->text();
        }
        EXPECT_TRUE(texts.contains("Title"));
        EXPECT_TRUE(texts.contains("One\nTwo <b>bold</b> & more"));
        const auto boxes = childrenOf<SheetCheckBox>(window);
        ASSERT_EQ(boxes.size(), 1u);
        EXPECT_EQ(boxes[0]->text(), "Do not ask && again");
        boxes[0]->click();
        // From the right end, in their order.
        EXPECT_GT(button(window, "First").x(), button(window, "Second & <i>").x());
        EXPECT_GT(button(window, "Second & <i>").x(), button(window, "Third").x());
        button(window, "Second & <i>").click();
    });
    EXPECT_EQ(answer.button, 1u);
    EXPECT_TRUE(answer.suppressed);
}

TEST_F(AlertTest, EndsWithTheProgram) {
    bool wasAsked = false;
    AlertAnswer answer;
    QTimer::singleShot(0, [&] {
        answer = ask(three, [&](AlertWindow&) {
            wasAsked = true;
            QCoreApplication::exit(0);
        });
    });
    EXPECT_EQ(QCoreApplication::exec(), 0);
    EXPECT_TRUE(wasAsked);
    EXPECT_EQ(answer.button, 2u);
}

TEST_F(AlertTest, FromRightToLeftTheBoxStandsAtTheRight) {
    const Theme theme = Theme::make(Theme::kOwnHue, false, QFont());
    SheetCheckBox box(QStringLiteral("iiiiiiii"), &theme, nullptr);
    box.resize(box.sizeHint());
    box.setChecked(true);
    const auto boxAt = [&](int x) {
        const QImage image = box.grab().toImage();
        return image.pixel(x, image.height() / 2 - 5) == theme.selection.rgb();
    };
    EXPECT_TRUE(boxAt(8));
    EXPECT_FALSE(boxAt(box.width() - 9));
    box.setLayoutDirection(Qt::RightToLeft);
    EXPECT_FALSE(boxAt(8));
    EXPECT_TRUE(boxAt(box.width() - 9));
    // The text begins beside the box and is whole.
    const QImage image = box.grab().toImage();
    int first = image.width(), last = 0;
    for (int x = 0; x < image.width() - 22; ++x)
        for (int y = 0; y < image.height(); ++y)
            if (image.pixelColor(x, y) != image.pixelColor(0, 0)) {
                first = std::min(first, x);
                last = std::max(last, x);
            }
    EXPECT_GT(first, 0);
    EXPECT_GT(last, image.width() - 36);
}
