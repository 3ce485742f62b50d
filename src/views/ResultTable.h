#pragma once
#include <QHelpEvent>
#include <QWidget>
#include <functional>
#include <map>
#include <optional>
#include <set>

#include "screen/ResultTableView.h"
#include "views/RowEditor.h"
#include "views/RowPainter.h"
#include "views/Scroller.h"

/// The list of results. It asks for the rows on screen alone, so it may be as long as one likes.
/// Owner:   SearchWindow. Threads: main. Units: logical pixels; what comes
/// through ResultTableView is for a text scale of 1.
class ResultTable : public QWidget, public ResultTableView {
  public:
    static constexpr double kRowSpacing = 2;
    static constexpr double kMargin = 1;  // above the first row and below the last

    ResultTable();
    void setTheme(const Theme* theme);
    /// A window without the keyboard shows its selection paler.
    void setHasKeyboard(bool has);

    // For assistive technologies.
    size_t count() const { return count_; }
    bool isSelected(size_t row) const { return selection_.count(row) != 0; }
    bool allowsMultipleSelection() const { return allowsMultiple_; }
    QRectF placeOf(size_t row) const { return rowPlace(row); }
    std::optional<size_t> rowUnder(double y) const { return rowAt(y); }
    QString spokenName(size_t row) const;
    QString spokenDetails(size_t row) const;
    /// Called when another row is the selected one, with what a reader may say of it.
    void setAnnouncer(std::function<void(const QString&)> announcer) {
        announce_ = std::move(announcer);
    }

    /// Who finds out, later, whether links lead somewhere.
    void setLinkFollower(const std::function<void(const std::string& path,
                                                  std::function<void(bool)> answer)>& follower) {
        followLink_ = follower;
    }

    // ResultTableView
    void setData(const ResultTableData* rows) override;
    void setDelegate(ResultTableViewDelegate* delegate) override { delegate_ = delegate; }
    void reloadData() override;
    void reloadRows(const std::vector<size_t>& rows) override;
    void redrawActions(const std::vector<size_t>& rows) override;
    void setRowHeight(double height) override;
    void setHasVerticalScroller(bool has) override;
    void selectRow(size_t row, bool extend) override;
    void selectRows(size_t first, size_t last) override;
    /// Does nothing where an empty selection is not allowed.
    void deselectAll() override;
    void setAllowsEmptySelection(bool allows) override { allowsEmpty_ = allows; }
    void setAllowsMultipleSelection(bool allows) override { allowsMultiple_ = allows; }
    std::optional<size_t> selectedRow() const override;
    std::vector<size_t> selectedRows() const override;
    std::optional<size_t> clickedRow() const override { return clickedRow_; }
    void setClickedRow(std::optional<size_t> row) override;
    Point menuPlaceOfRow(size_t row) const override;
    /// A part of it will do.
    bool isRowVisible(size_t row) const override;
    void scrollRowToVisible(size_t row) override;
    Point clipOrigin() const override { return {0, offset_ / zoom()}; }
    void setClipOrigin(Point origin) override;
    void beginEditingRow(const RowEdit& edit) override;
    void endEditingRow() override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void changeEvent(QEvent* event) override;
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    double zoom() const { return theme_ ? theme_->zoom : 1; }
    double margin() const { return kMargin * zoom(); }
    double pitch() const { return (rowHeight_ + kRowSpacing) * zoom(); }
    double contentHeight() const { return double(count_) * pitch() + 2 * margin(); }
    QRectF rowPlace(size_t row) const;
    std::optional<size_t> rowAt(double y) const;
    const RowContent& content(size_t row);
    /// Of a selected row.
    std::optional<RowAction> actionOf(size_t row, const RowContent& shown) const;
    void showToolTip(const QHelpEvent& event);
    void setOffset(double offset);
    void updateRow(size_t row);
    /// Its menu is for it alone.
    void drawClickedRow(QPainter& painter, const QRectF& place) const;
    void updateScroller();
    RowContent contentFor(size_t row) const;
    void followLinkOf(const RowContent& content);
    void askForLink(const std::string& path);
    bool isBroken(const RowContent& content) const {
        return content.isLink && brokenLinks_.count(content.linkPath) != 0;
    }
    void tellReaders();
    void announce();
    void setSelection(std::set<size_t> rows);

    const Theme* theme_ = nullptr;
    IconCache icons_;
    std::optional<RowPainter> painter_;
    Scroller* const scroller_;
    const ResultTableData* data_ = nullptr;
    ResultTableViewDelegate* delegate_ = nullptr;
    RowEditor* editor_ = nullptr;  // while a row is edited
    double rowHeight_ = 47;        // at a text scale of 1
    double offset_ = 0;            // what has scrolled out at the top
    size_t count_ = 0;             // of rows, at the last reload
    std::set<size_t> selection_;
    size_t lastSelected_ = 0;
    std::optional<size_t> clickedRow_;       // while its context menu is open
    size_t anchor_ = 0;                      // where a range of selected rows begins
    std::map<size_t, RowContent> contents_;  // of the rows on screen, so that a repaint shows what
                                             // was there even if the data has moved on
    std::function<void(const std::string&, std::function<void(bool)>)> followLink_ = {};
    enum class AskAgain { no, yes };                // since the question it may have changed
    std::map<std::string, AskAgain> pendingLinks_;  // one question at a time for each
    std::set<std::string> brokenLinks_;             // as the last answers were
    std::function<void(const QString&)> announce_ = {};
    QString announced_;
    QString actionTip_;  // the last tool tip of an action
    bool hasKeyboard_ = true;
    bool allowsEmpty_ = true, allowsMultiple_ = true;
};
