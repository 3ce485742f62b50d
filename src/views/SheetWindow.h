#pragma once
#include <QVBoxLayout>

#include "views/Panel.h"
#include "views/WindowSystem.h"

/// A small window of ours beside the search window, in its looks: what it holds stands in one
/// column, and the sheet is as large as that needs.
/// Owner:   the view that it is a part of. Threads: main.
class SheetWindow : public Panel {
  public:
    /// Padding: around the column, within the sheet, at a text scale of 1.
    SheetWindow(const WindowSystem& system, int padding);

    const Theme& theme() const { return theme_; }
    QVBoxLayout& column() { return *column_; }
    /// In its place. keyboard: asked for, or left where it is.
    enum class Keyboard { asked, left };
    void showCentred(Keyboard keyboard);
    /// After what it holds has changed.
    void fit();

  protected:
    /// Called whenever the theme is another one.
    virtual void themeChanged() {}
    /// The desktop, or Escape, wants it closed.
    virtual void closeAsked() {}
    /// Where a sheet of this size is shown: unless said otherwise, a little above the middle of the
    /// screen where the user is.
    virtual QPoint cornerFor(QSize sheet) const;
    void keyPressEvent(QKeyEvent* event) override;
    void hideEvent(QHideEvent* event) override;

  private:
    void renewTheme();
    QRect place() const;

    const WindowSystem system_;
    const int padding_;
    Theme theme_;
    bool keepsOldSizes_ = false;  // until it is hidden: what it holds was made for them
    QVBoxLayout* const column_;
};
