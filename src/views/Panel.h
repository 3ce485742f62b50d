#pragma once
#include <QElapsedTimer>
#include <QPointer>
#include <QWidget>
#include <QWindow>
#include <functional>
#include <optional>

#include "views/Shadow.h"
#include "views/Theme.h"
#include "views/WindowSystem.h"

/// The top-level widget of our windows: a rounded sheet with a soft shadow around it where there is
/// a compositor, else the sheet alone, cut out by a mask.
/// Owner:   SearchWindow, or a SheetWindow that is one. Threads: main.
class Panel : public QWidget {
  public:
    static constexpr int kBorder = 1;  // the line around the sheet, within it

    Panel();
    /// Called when the window gets or loses the keyboard, when it has moved, when the user begins
    /// to move it, when the desktop wants it closed, and when the desktop's colours or fonts have
    /// changed.
    struct Events {
        std::function<void(bool hasKeyboard)> activationChanged = {};
        std::function<void()> moved = {};
        std::function<void()> dragBegan = {};
        std::function<void()> closeAsked = {};
        std::function<void()> lookChanged = {};
    };
    void setEvents(Events events) { events_ = std::move(events); }
    void setTheme(const Theme* theme);
    /// Whether what is behind the window shines through; changes only while it is hidden.
    void setComposited(bool composited);
    /// How far the shadow reaches around the sheet.
    QMargins shadowMargins() const;
    /// How large the sheet is. The widget may be larger than sheet and shadow: what is left over at
    /// its right and bottom is not seen, so that the sheet can grow without the window doing so.
    void setSheetSize(QSize size);
    /// The sheet, in this widget.
    QRect sheet() const;
    /// Clicks beside the sheet are for what is behind. To be called by whoever has shown the window
    /// or given it another size; on another screen it does so by itself. The system outlives it.
    void letClicksThrough(const WindowSystem& system);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

  private:
    void updateMask();
    bool isPutBack(const QMoveEvent& event);
    void watchScreen();

    Events events_;
    const Theme* theme_ = nullptr;
    Shadow shadow_;
    const WindowSystem* windowSystem_ = nullptr;
    QPointer<QWindow> watched_;  // whose screen may become another one
    bool composited_ = false;
    QSize sheetSize_;
    std::optional<QPoint> asked_;  // where it is to come up, until it did
    QElapsedTimer sinceShown_;
};
