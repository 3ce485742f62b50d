#pragma once
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "screen/Geometry.h"
#include "screen/RowAction.h"
#include "screen/RowContent.h"

/// Where the table gets its rows from: only those on screen are asked for. Main thread.
class ResultTableData {
  public:
    virtual ~ResultTableData() = default;
    virtual size_t numberOfRows() const = 0;
    virtual RowContent row(size_t row) const = 0;
    /// Asked each time that a selected row is drawn; shown is what the table has of it.
    virtual std::optional<RowAction> actionOf(size_t /*row*/, const RowContent& /*shown*/) const {
        return std::nullopt;
    }
};

/// A row's name, or a folder of its path, while it is edited in its place.
struct RowEdit {
    size_t row = 0;
    std::u16string text = {};
    TextRange selection = {};
    std::optional<TextRange> pathPart = {};  // of the path line; nothing: the name is edited
};

/// Keys that a row's editor asks about.
enum class RowEditCommand { insertNewline, cancelOperation };

/// Who is told what the user does with the table. Main thread.
class ResultTableViewDelegate {
  public:
    virtual ~ResultTableViewDelegate() = default;
    /// By the user's or the program's doing.
    virtual void tableViewSelectionDidChange() = 0;
    virtual void rowDoubleClicked(size_t row) = 0;
    /// A menu is wanted at this place of the screen, counted downward; clickedRow tells its row
    /// until that is set again.
    virtual void contextMenuWanted(Point) {}
    /// It was scrolled, or its height changed.
    virtual void clipViewBoundsDidChange() = 0;
    /// True: the editor stays until it is told to end; else it ends.
    virtual bool rowEditDoCommand(RowEditCommand command, const std::u16string& text) = 0;
    /// The editor has gone: by a command, or since the keyboard went elsewhere.
    virtual void rowEditDidEnd() = 0;
};

/// The list of results. Main thread.
class ResultTableView {
  public:
    virtual ~ResultTableView() = default;
    virtual void setData(const ResultTableData* data) = 0;
    virtual void setDelegate(ResultTableViewDelegate* delegate) = 0;
    /// All rows may have changed, and their number. The selection goes.
    virtual void reloadData() = 0;
    virtual void reloadRows(const std::vector<size_t>& rows) = 0;
    /// Other keys do other things to these rows now, those of them that are selected.
    virtual void redrawActions(const std::vector<size_t>& rows) = 0;
    virtual void setRowHeight(double height) = 0;
    virtual void setHasVerticalScroller(bool has) = 0;
    /// Extending keeps what is selected.
    virtual void selectRow(size_t row, bool extend) = 0;
    /// These and all between, instead of what is selected.
    virtual void selectRows(size_t first, size_t last) = 0;
    virtual void deselectAll() = 0;
    virtual void setAllowsEmptySelection(bool allows) = 0;
    virtual void setAllowsMultipleSelection(bool allows) = 0;
    /// The one selected last, of those that are selected.
    virtual std::optional<size_t> selectedRow() const = 0;
    /// Ascending.
    virtual std::vector<size_t> selectedRows() const = 0;
    /// The row that a context menu is open for; nothing: none is, or it is for the selection.
    virtual std::optional<size_t> clickedRow() const = 0;
    virtual void setClickedRow(std::optional<size_t> row) = 0;
    /// Where a menu for the row is at hand, as contextMenuWanted has it.
    virtual Point menuPlaceOfRow(size_t row) const = 0;
    virtual bool isRowVisible(size_t row) const = 0;
    virtual void scrollRowToVisible(size_t row) = 0;
    virtual Point clipOrigin() const = 0;
    virtual void setClipOrigin(Point origin) = 0;
    /// Shows an editor over the row, with the keyboard. There is one at most.
    virtual void beginEditingRow(const RowEdit& edit) = 0;
    /// Does nothing without one.
    virtual void endEditingRow() = 0;
};
