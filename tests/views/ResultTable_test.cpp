#include "views/ResultTable.h"

#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QMouseEvent>
#include <QTemporaryDir>
#include <QWheelEvent>

#include "util/World.h"
#include "views/QtTest.h"
#include "views/ResultTableAccess.h"
#include "views/rowSpeech.h"

namespace {

constexpr int kWidth = 638, kPitch = 49, kShown = 10;
constexpr int kHeight = kShown * kPitch + 2;

struct Rows : ResultTableData {
    size_t count = 0;
    mutable std::set<size_t> asked;
    std::optional<RowAction> action = {};
    std::optional<RowAction> actionOf(size_t, const RowContent&) const override { return action; }
    size_t numberOfRows() const override { return count; }
    RowContent row(size_t row) const override {
        asked.insert(row);
        return {.iconName = "folder", .name = "name " + std::to_string(row), .path = "/a/b"};
    }
};

struct Listener : ResultTableViewDelegate {
    bool rowEditDoCommand(RowEditCommand command, const std::u16string& text) override {
        commands.push_back({command, text});
        return false;
    }
    void rowEditDidEnd() override { editsEnded++; }
    std::vector<std::pair<RowEditCommand, std::u16string>> commands;
    int editsEnded = 0;
    int changes = 0, scrolls = 0;
    std::vector<size_t> opened;
    void tableViewSelectionDidChange() override { changes++; }
    void clipViewBoundsDidChange() override { scrolls++; }
    void rowDoubleClicked(size_t row) override { opened.push_back(row); }
    std::function<void()> menu;
    void contextMenuWanted(Point) override { menu(); }
};

class ResultTableTest : public QtTest {
  protected:
    ResultTableTest() {
        table.setTheme(&theme);
        table.resize(kWidth, kHeight);
        rows.count = 1000000;
        table.setData(&rows);
        table.setDelegate(&listener);
    }
    std::set<size_t> askedForPainting() {
        rows.asked.clear();
        table.grab();
        return rows.asked;
    }
    void click(size_t shownRow, Qt::KeyboardModifiers modifiers = {},
               QEvent::Type type = QEvent::MouseButtonPress) {
        const QPointF place(100, double(shownRow * kPitch + kPitch / 2));
        QMouseEvent event(type, place, place, Qt::LeftButton, Qt::LeftButton, modifiers);
        QCoreApplication::sendEvent(&table, &event);
    }
    void wheel(int notches) {
        QWheelEvent event({100, 100}, {100, 100}, {}, {0, notches * 120}, {}, {}, Qt::NoScrollPhase,
                          false);
        QCoreApplication::sendEvent(&table, &event);
    }
    using Selection = std::vector<size_t>;

    const Theme theme = Theme::make(Theme::kOwnHue, false, QFont());
    Rows rows;
    Listener listener;
    ResultTable table;
};

TEST_F(ResultTableTest, AMenuIsForTheRowUnderThePointer) {
    std::vector<std::optional<size_t>> rowsOfMenus;
    listener.menu = [&] { rowsOfMenus.push_back(table.clickedRow()); };
    table.selectRow(0, false);
    const QPoint inRowThree(100, 3 * kPitch + kPitch / 2);
    for (const auto reason : {QContextMenuEvent::Mouse, QContextMenuEvent::Keyboard}) {
        QContextMenuEvent event(reason, inRowThree, inRowThree);
        QCoreApplication::sendEvent(&table, &event);
        table.setClickedRow(std::nullopt);
    }
    EXPECT_EQ(rowsOfMenus, (std::vector<std::optional<size_t>>{3, std::nullopt}));
    EXPECT_EQ(table.selectedRows(), std::vector<size_t>{0});
}

}  // namespace

TEST_F(ResultTableTest, AsksForTheRowsOnScreenAlone) {
    std::set<size_t> asked = askedForPainting();
    EXPECT_EQ(*asked.begin(), 0u);
    EXPECT_LE(asked.size(), size_t(kShown + 1));
    EXPECT_GE(asked.size(), size_t(kShown));

    table.scrollRowToVisible(rows.count - 1);
    asked = askedForPainting();
    EXPECT_EQ(*asked.rbegin(), rows.count - 1);
    EXPECT_LE(asked.size(), size_t(kShown + 1));
    EXPECT_TRUE(askedForPainting().empty());  // painting again needs nobody

    table.reloadRows({rows.count - 2, 5});
    EXPECT_EQ(askedForPainting(), std::set<size_t>{rows.count - 2});
    rows.count = 3;
    table.reloadData();
    EXPECT_EQ(askedForPainting(), (std::set<size_t>{0, 1, 2}));
    EXPECT_EQ(table.clipOrigin(), Point{});
}

TEST_F(ResultTableTest, SelectsAndExtends) {
    table.selectRow(3, false);
    EXPECT_EQ(table.selectedRows(), Selection{3});
    table.selectRow(1, true);
    EXPECT_EQ(table.selectedRows(), (Selection{1, 3}));
    EXPECT_EQ(listener.changes, 2);
    table.selectRow(1, true);
    EXPECT_EQ(listener.changes, 2);
    table.selectRow(5, false);
    EXPECT_EQ(table.selectedRows(), Selection{5});
    table.selectRow(rows.count, false);  // no such row
    EXPECT_EQ(table.selectedRows(), Selection{5});
    rows.count = 4;
    table.reloadRows({});
    EXPECT_TRUE(table.selectedRows().empty());
}

TEST_F(ResultTableTest, TheMouseSelectsAndOpens) {
    click(2);
    EXPECT_EQ(table.selectedRows(), Selection{2});
    click(5, Qt::ShiftModifier);
    EXPECT_EQ(table.selectedRows(), (Selection{2, 3, 4, 5}));
    click(3, Qt::ControlModifier);
    EXPECT_EQ(table.selectedRows(), (Selection{2, 4, 5}));
    click(7, {}, QEvent::MouseButtonDblClick);
    EXPECT_EQ(listener.opened, Selection{7});
    EXPECT_EQ(table.focusPolicy(), Qt::NoFocus);
}

TEST_F(ResultTableTest, TheWheelScrollsWithinBounds) {
    wheel(1);
    EXPECT_EQ(table.clipOrigin().y, 0);
    wheel(-1);
    EXPECT_GT(table.clipOrigin().y, 0);
    table.setClipOrigin({0, 1e12});
    EXPECT_EQ(table.clipOrigin().y, double(rows.count) * kPitch + 2 - kHeight);
}

TEST_F(ResultTableTest, ARowAskedForIsInSightAfterTheTableHasGrown) {
    table.resize(kWidth, 1);
    table.scrollRowToVisible(0);
    table.resize(kWidth, kHeight);
    EXPECT_EQ(table.clipOrigin().y, 0);

    table.resize(kWidth, 1);
    table.scrollRowToVisible(4);
    table.resize(kWidth, kHeight);
    const auto asked = askedForPainting();
    EXPECT_TRUE(asked.count(4));
}

TEST_F(ResultTableTest, HoldsToWhatSelectionsAreAllowed) {
    table.selectRow(3, false);
    table.setAllowsEmptySelection(false);
    table.deselectAll();
    click(3, Qt::ControlModifier);
    EXPECT_EQ(table.selectedRows(), Selection{3});
    table.setAllowsEmptySelection(true);
    table.deselectAll();
    EXPECT_TRUE(table.selectedRows().empty());
    EXPECT_EQ(listener.changes, 2);

    table.setAllowsMultipleSelection(false);
    click(2);
    for (const auto modifier : {Qt::ShiftModifier, Qt::ControlModifier}) {
        click(5, modifier);
        EXPECT_EQ(table.selectedRows(), Selection{5});
        click(2);
    }
    table.selectRow(6, true);
    EXPECT_EQ(table.selectedRows(), Selection{6});
}

TEST_F(ResultTableTest, TellsWhereItStandsAndWhenThatChanges) {
    EXPECT_TRUE(table.isRowVisible(0));
    EXPECT_TRUE(table.isRowVisible(kShown - 1));
    EXPECT_FALSE(table.isRowVisible(kShown));
    table.setClipOrigin({0, kPitch + kPitch / 2});
    EXPECT_EQ(listener.scrolls, 1);
    EXPECT_FALSE(table.isRowVisible(0));
    EXPECT_TRUE(table.isRowVisible(1));  // a part of it
    EXPECT_TRUE(table.isRowVisible(kShown + 1));
    EXPECT_FALSE(table.isRowVisible(rows.count));
    table.setClipOrigin({0, kPitch + kPitch / 2});
    EXPECT_EQ(listener.scrolls, 1);  // nothing moved

    table.show();
    const int before = listener.scrolls;
    table.resize(kWidth, kHeight - kPitch);
    EXPECT_EQ(listener.scrolls, before + 1);
    table.resize(kWidth - 10, kHeight - kPitch);
    EXPECT_EQ(listener.scrolls, before + 1);
}

TEST_F(ResultTableTest, ReadersFindEachRowAndWhatIsSelected) {
    QAccessibleInterface* const list = QAccessible::queryAccessibleInterface(&table);
    ASSERT_TRUE(list);
    EXPECT_EQ(list->role(), QAccessible::List);
    EXPECT_EQ(list->childCount(), 1000000);
    table.selectRow(7, false);
    QAccessibleInterface* const row = list->child(7);
    EXPECT_EQ(row->text(QAccessible::Name), "name 7");
    EXPECT_EQ(row->text(QAccessible::Description), "/a/b");
    EXPECT_TRUE(row->state().selected && row->state().focused && !row->state().offscreen);
    EXPECT_FALSE(list->child(8)->state().selected);
    EXPECT_TRUE(list->child(999)->state().offscreen);
    EXPECT_EQ(list->indexOfChild(row), 7);
    rows.count = 5;
    table.reloadData();
    EXPECT_FALSE(row->isValid());
    EXPECT_EQ(list->child(7), nullptr);
}

TEST_F(ResultTableTest, FromRightToLeftTheIconsStandAtTheRight) {
    rows.count = 1;
    table.reloadData();
    const auto columnsWithInk = [&](int left, int right) {
        const QImage image = table.grab().toImage();
        int columns = 0;
        for (int x = left; x < right; ++x)
            for (int y = 0; y < kPitch; ++y)
                if (image.pixel(x, y) != image.pixel(kWidth / 2, kPitch - 1)) {
                    columns++;
                    break;
                }
        return columns;
    };
    EXPECT_GT(columnsWithInk(15, 47), 20);
    EXPECT_EQ(columnsWithInk(kWidth - 250, kWidth - 20), 0);
    table.setLayoutDirection(Qt::RightToLeft);
    EXPECT_GT(columnsWithInk(kWidth - 47, kWidth - 15), 20);
    EXPECT_EQ(columnsWithInk(20, 250), 0);
}

TEST(rowSpeech, SaysInWordsWhatSignsAndBadgesMean) {
    RowContent row{.name = "a\tb", .path = "/c", .isLink = true, .isMarked = true};
    row.attributes = {{"⚖️ 3 Bytes 👤 anna 🔒 rw- r-- r--", {}}};
    EXPECT_TRUE(rowSpeech::name(row).endsWith(", link, marked"));
    EXPECT_EQ(rowSpeech::details(row), "/c, Size: 3 Bytes, Owner: anna, Permissions: rw- r-- r--");
    row.source = RowContent::Source::move;
    EXPECT_TRUE(rowSpeech::name(row).endsWith(", link, to be moved"));
    row.source = RowContent::Source::none;
    row.name = "<b>";
    EXPECT_EQ(rowSpeech::name(row, true), "<b>, broken link, marked");
    EXPECT_TRUE(rowSpeech::toolTip(row).contains("&lt;b&gt;<br>/c<br>Size: 3 Bytes<br>Owner"));
}

TEST_F(ResultTableTest, ALinkIsAskedForOnceUntilItIsAnsweredFor) {
    struct Links : ResultTableData {
        size_t numberOfRows() const override { return 3; }
        RowContent row(size_t row) const override {
            return {.name = "a", .isLink = true, .linkPath = row == 0 ? "/one" : "/two"};
        }
    } links;
    std::vector<std::string> asked;
    std::vector<std::function<void(bool)>> answers;
    table.setLinkFollower([&](const std::string& path, std::function<void(bool)> answer) {
        asked.push_back(path);
        answers.push_back(std::move(answer));
    });
    table.setData(&links);
    for (int keyStroke = 0; keyStroke < 3; ++keyStroke) {
        table.reloadData();
        table.grab();
    }
    EXPECT_EQ(asked, (std::vector<std::string>{"/one", "/two"}));
    // It has been asked for again, and may be another one by now.
    answers[1](false);
    EXPECT_EQ(asked, (std::vector<std::string>{"/one", "/two", "/two"}));
    answers[2](true);
    EXPECT_EQ(asked.size(), 3u);
    table.reloadData();
    table.grab();
    EXPECT_EQ(asked, (std::vector<std::string>{"/one", "/two", "/two", "/two"}));
    table.setData(&rows);
}

TEST_F(ResultTableTest, AnActionIsShownAtTheEndOfASelectedRow) {
    table.selectRow(1, false);
    const QRect rowZero(0, 0, kWidth, kPitch), rowOne(0, kPitch, kWidth, kPitch);
    const QImage zero = table.grab(rowZero).toImage(), one = table.grab(rowOne).toImage();
    rows.action = RowAction{.symbol = RowAction::Symbol::copyPath, .label = "Copy it"};
    table.redrawActions({1});
    EXPECT_EQ(table.grab(rowZero).toImage(), zero) << "it is not selected";
    const QImage shown = table.grab(rowOne).toImage();
    EXPECT_NE(shown, one);
    EXPECT_EQ(shown.copy(0, 0, kWidth / 2, kPitch), one.copy(0, 0, kWidth / 2, kPitch));
    EXPECT_TRUE(table.spokenDetails(1).endsWith("Return: Copy it"));
    EXPECT_FALSE(table.spokenDetails(0).contains("Copy it"));
}

TEST_F(ResultTableTest, AnApplicationsPictureComesAfterThePaintAndIsNotStretched) {
    World world;
    const QTemporaryDir folder;
    const QString path = folder.filePath("wide.png");
    QImage wide(440, 40, QImage::Format_RGB32);
    wide.fill(Qt::red);
    ASSERT_TRUE(wide.save(path));
    rows.action = RowAction{.symbol = RowAction::Symbol::open, .label = "Open"};
    table.selectRow(0, false);
    const QImage withSymbol = table.grab().toImage();
    rows.action->iconName = path.toStdString();
    EXPECT_EQ(table.grab().toImage(), withSymbol);
    int red = 0;
    QElapsedTimer timer;
    for (timer.start(); red == 0 && timer.elapsed() < 10000;) {
        QCoreApplication::processEvents();
        world.mainQueue().runPending();
        const QImage image = table.grab().toImage();
        for (int y = 0; y < kPitch; ++y)
            if (image.pixelColor(kWidth - RowPainter::kRightInset - 11, y) == Qt::red) red++;
    }
    EXPECT_EQ(red, 2) << "22 by 2, as 440 by 40 is";
}

TEST_F(ResultTableTest, TheMenuByKeyOpensBelowTheText) {
    const Theme large = Theme::make(Theme::kOwnHue, DesktopLook{.textScale = 1.5}, QFont());
    table.setTheme(&large);
    const double left = RowPainter::kTextLeft * 1.5;
    EXPECT_NEAR(table.menuPlaceOfRow(0).x - table.mapToGlobal(QPoint()).x(), left, 1);
    table.setLayoutDirection(Qt::RightToLeft);
    EXPECT_NEAR(table.menuPlaceOfRow(0).x - table.mapToGlobal(QPoint()).x(), kWidth - left, 2);
    table.setTheme(&theme);
}
