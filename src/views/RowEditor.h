#pragma once
#include <QLineEdit>
#include <functional>

#include "screen/ResultTableView.h"

struct Theme;

/// The line in which a name is edited, over its row. Return and Escape are asked about; it ends
/// with them, and when the keyboard goes elsewhere.
/// Owner:   ResultTable. Threads: main.
class RowEditor : public QLineEdit {
  public:
    /// command: true, it stays. ended: it is to be taken away.
    RowEditor(QWidget* parent, std::function<bool(RowEditCommand, const std::u16string&)> command,
              std::function<void()> ended);
    /// Around the text, which stands where the row's own does.
    static constexpr int kPadding = 6;
    void setTheme(const Theme& theme, bool isPath);
    /// Shows the text with the keyboard.
    void begin(const RowEdit& edit);

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    const std::function<bool(RowEditCommand, const std::u16string&)> command_;
    const std::function<void()> ended_;
    QColor frame_;
};
