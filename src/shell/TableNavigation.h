#pragma once
#include <cstddef>
#include <functional>
#include <optional>

class ResultTableController;
class ResultTableView;
struct KeyEvent;

/// The keys that move the selection of the result table, and scroll it.
/// Owner:   SearchFieldKeys. Threads: main.
class TableNavigation {
  public:
    TableNavigation(ResultTableView& table, const ResultTableController& rows)
        : table_(table), rows_(rows) {}

    /// What this key does to the table, to be called later; nothing: it is another key.
    std::function<void()> movementFor(const KeyEvent& event);

    void moveSelectionUp(bool extend) { moveSelection(-1, extend); }
    void moveSelectionDown(bool extend) { moveSelection(1, extend); }
    void moveSelectionToBeginningOfDocument(bool extend);
    void moveSelectionToEndOfDocument(bool extend);
    void moveSelectionPageUp();
    void moveSelectionPageDown();
    void scrollToBeginningOfDocument();
    void scrollToEndOfDocument();
    void scrollPageUp() { scrollPages(-1); }
    void scrollPageDown() { scrollPages(1); }

  private:
    struct Range {
        size_t anchor = 0;  // where it began
        size_t lead = 0;    // the end that moves
    };
    std::optional<Range> selectedRange(bool up) const;
    void moveSelection(long rows, bool extend);
    void select(size_t anchor, size_t lead);
    void scrollPages(double pages);
    double rowPitch() const;
    size_t rowsOfPage() const;

    ResultTableView& table_;
    const ResultTableController& rows_;
    Range last_;
};
