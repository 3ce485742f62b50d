#pragma once
#include <QElapsedTimer>
#include <QVariantAnimation>
#include <cstdint>
#include <functional>
#include <memory>

#include "screen/WindowView.h"
#include "views/InfoBar.h"
#include "views/Panel.h"
#include "views/ResultTable.h"
#include "views/SearchField.h"

/// What the search window needs of the desktop beyond Qt; each may be missing.
struct WindowSystem {
    /// Whether what is behind a translucent window is seen. Missing: no.
    std::function<bool()> isComposited = {};
    /// Before each showing: the native window, how far its shadow reaches around, in device pixels,
    /// and what a growing window shows until it is painted.
    std::function<void(uintptr_t window, QMargins shadow, QColor ground)> prepare = {};
    /// Clicks beside this part of the window, in device pixels, are not ours; empty: all are.
    std::function<void(uintptr_t window, QRect part)> takeClicksIn = {};
    /// Asks for the keyboard.
    std::function<void(uintptr_t window)> activate = {};
    KeySymbols keySymbols = {};
};

/// The search window with its three parts. Owns the theme.
/// Owner:   main. Threads: main.
class SearchWindow : public WindowView {
  public:
    explicit SearchWindow(WindowSystem system = {});
    ~SearchWindow() override;

    SearchFieldView& field() { return *field_; }
    ResultTableView& table() { return *table_; }
    InfoBarView& infoBar() { return *infoBar_; }
    QWidget* widget() { return &panel_; }

    // WindowView
    void setDelegate(WindowViewDelegate* delegate) override { delegate_ = delegate; }
    void show() override;
    void hide() override;
    bool isVisible() const override { return panel_.isVisible(); }
    bool isActive() const override;
    Rect frame() const override;
    void setFrame(Rect frame, bool animated) override;
    Rect screenFrame() const override;
    Rect visibleScreenFrame() const override;

  private:
    void renewTheme();
    void layOut();
    void prepareWindow();
    void letClicksThrough();
    bool isResizing() const { return resizing_.state() == QAbstractAnimation::Running; }
    /// The sheet's place on the desktop as Qt counts it: y downward.
    QRect sheetPlace() const;
    /// The native window around a sheet: its shadow, and room to grow.
    QRect roomFor(const QRect& sheet) const;
    /// While the window is seen it keeps its room as long as it can.
    enum class Room { kept, renewed };
    void makeRoom(const QRect& sheet, Room room);
    void placeSheet(const QRect& sheet, Room room);
    /// The screen of the window, or before it shows, the one where the user is.
    const QScreen* screen() const;

    const WindowSystem system_;
    WindowViewDelegate* delegate_ = nullptr;
    Theme theme_;
    Panel panel_;
    std::unique_ptr<SearchField> field_;
    QWidget* tableClip_;  // these three belong to the panel
    ResultTable* table_;
    InfoBar* infoBar_;
    QVariantAnimation resizing_;
    QRect target_;              // of the running animation
    QElapsedTimer activation_;  // since the keyboard was asked for
};
