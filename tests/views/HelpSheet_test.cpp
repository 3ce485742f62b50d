#include "views/HelpSheet.h"

#include <QLineEdit>
#include <set>

#include "views/HelpList.h"
#include "views/HelpRow.h"
#include "views/QtTest.h"

namespace {

class Listener : public HelpViewDelegate {
  public:
    void helpFilterDidChange(const std::string& filter) override { filters.push_back(filter); }
    void helpWantsToClose() override { closes++; }
    std::vector<std::string> filters;
    int closes = 0;
};

HelpContent contentOf(int lines) {
    HelpContent content{.title = "Keys", .groups = {}, .whenEmpty = "None"};
    for (const char* title : {"One", "Two"}) {
        content.groups.push_back({.title = title, .lines = {}});
        for (int i = 0; i < lines; i++)
            content.groups.back().lines.push_back({"Do it", {{"Ctrl", "Shift", "K"}, {"F2"}}});
    }
    return content;
}

class HelpSheetTest : public QtTest {
  protected:
    HelpSheet view_{{}, [] { return QRect(100, 60, 600, 300); }};
    QWidget& sheet() { return *view_.widget(HelpView::Kind::sheet); }
    std::vector<HelpRow*> rows() { return childrenOf<HelpRow>(sheet()); }
    /// All rows lie within the list, none over another.
    void expectRowsApart(const QWidget& window) {
        const auto rows = childrenOf<HelpRow>(window);
        for (const HelpRow* row : rows) {
            EXPECT_TRUE(row->parentWidget()->rect().contains(row->geometry()));
            for (const HelpRow* other : rows)
                EXPECT_TRUE(row == other || !row->geometry().intersects(other->geometry()));
        }
    }
};

}  // namespace

TEST_F(HelpSheetTest, TypingFiltersKeysScrollAndEscapeAsksToClose) {
    Listener listener;
    view_.setDelegate(&listener);
    EXPECT_FALSE(view_.shown());
    view_.show(HelpView::Kind::sheet, contentOf(40));
    EXPECT_EQ(view_.shown(), HelpView::Kind::sheet);
    ASSERT_EQ(rows().size(), 80u);
    EXPECT_EQ(rows()[0]->accessibleName(), "Do it: Ctrl+Shift+K or F2");
    expectRowsApart(sheet());

    const auto top = [&] { return rows()[0]->mapTo(&sheet(), QPoint()).y(); };
    const int before = top();
    view_.scroll(HelpView::Scroll::lineUp);
    EXPECT_EQ(top(), before);
    view_.scroll(HelpView::Scroll::pageDown);
    const int page = before - top();
    EXPECT_GT(page, 100);
    view_.scroll(HelpView::Scroll::bottom);
    const int most = before - top();
    view_.scroll(HelpView::Scroll::pageDown);
    EXPECT_EQ(before - top(), most);
    const int height = sheet().height();
    childrenOf<QLineEdit>(sheet())[0]->setText("x");
    EXPECT_EQ(listener.filters.back(), "x");
    view_.setContent({.title = "Keys", .groups = {}, .whenEmpty = "None"});
    EXPECT_TRUE(rows().empty());
    EXPECT_EQ(sheet().height(), height) << "the sheet stays as it is";
    sheet().close();
    EXPECT_EQ(listener.closes, 1);
    view_.hide();
    view_.show(HelpView::Kind::sheet, contentOf(3));
    EXPECT_EQ(childrenOf<QLineEdit>(sheet())[0]->text(), "");
    view_.setDelegate(nullptr);
}

TEST_F(HelpSheetTest, ThePassingOneFlowsThroughColumnsAndTakesNoKeyboard) {
    view_.show(HelpView::Kind::passing, contentOf(9));
    EXPECT_EQ(view_.shown(), HelpView::Kind::passing);
    QWidget& passing = *view_.widget(HelpView::Kind::passing);
    EXPECT_TRUE(passing.testAttribute(Qt::WA_ShowWithoutActivating));
    expectRowsApart(passing);
    std::set<int> columns;
    for (const HelpRow* row : childrenOf<HelpRow>(passing)) columns.insert(row->x());
    EXPECT_GT(columns.size(), 1u);
    view_.hide();
    EXPECT_FALSE(view_.shown());
}

TEST_F(HelpSheetTest, RightToLeftIsTheMirrorImage) {
    QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    HelpSheet mirrored{{}, [] { return QRect(100, 60, 600, 300); }};
    mirrored.show(HelpView::Kind::sheet, contentOf(3));
    const auto rows = childrenOf<HelpRow>(*mirrored.widget(HelpView::Kind::sheet));
    ASSERT_EQ(rows.size(), 6u);
    HelpRow& first = *rows.front();
    EXPECT_GT(first.x(), 0) << "the scroll bar stands at the left";
    const QImage picture = first.grab().toImage();
    int leftmost = picture.width();
    const QRgb ground = picture.pixel(picture.width() / 2, 3);
    for (int x = picture.width() - 1; x >= 0; x--)
        if (picture.pixel(x, picture.height() / 2) != ground) leftmost = x;
    EXPECT_LT(leftmost, 40) << "the caps stand at the left";
    QGuiApplication::setLayoutDirection(Qt::LeftToRight);
}
