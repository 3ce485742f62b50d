#pragma once
#include <QTimer>
#include <QVariantAnimation>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "screen/WindowView.h"
#include "views/EdgeGrip.h"
#include "views/InfoBar.h"
#include "views/Panel.h"
#include "views/PreviewPanel.h"
#include "views/ResultTable.h"
#include "views/SearchField.h"
#include "views/WindowButtons.h"
#include "views/WindowSystem.h"

/// The search window with its three parts. Owns the theme.
/// Owner:   main. Threads: main.
class SearchWindow : public WindowView {
  public:
    explicit SearchWindow(WindowSystem system = {});
    ~SearchWindow() override;

    SearchFieldView& field() { return *field_; }
    ResultTableView& table() { return *table_; }
    InfoBarView& infoBar() { return *infoBar_; }
    IndicatorsView& indicators() { return infoBar_->indicators(); }
    PreviewView& preview() { return preview_; }
    QWidget* widget() { return &panel_; }
    /// The sheet's place on the desktop as Qt counts it: y downward.
    QRect sheetPlace() const;

    // WindowView
    void setDelegate(WindowViewDelegate* delegate) override { delegate_ = delegate; }
    void show() override;
    void hide() override;
    bool isVisible() const override { return panel_.isVisible(); }
    void setResizable(bool resizable) override;
    void setLook(const ModeLook& look) override;
    void setSticky(bool sticky) override { buttons_->setSticky(sticky); }
    Rect frame() const override;
    void setFrame(Rect frame, bool animated, std::function<void()> ended = {}) override;
    Rect screenFrame() const override;
    Rect visibleScreenFrame() const override;
    Rect visibleScreenFrameFor(Rect place) const override;

  private:
    Rect toRect(const QRect& place) const;
    QRect toQRect(const Rect& rect) const;
    void renewTheme();
    void layOut();
    void makeGrips();
    void watchScreens();
    void drag(bool leftEdge, int distance);
    /// By someone else.
    void moved();
    void settled();
    void tellOfPlace();
    void animationEnded();
    void prepareWindow();
    bool isResizing() const { return resizing_.state() == QAbstractAnimation::Running; }
    /// The sheet's place, or the one to which it goes back.
    QRect believedPlace() const { return settling_.isActive() ? own_ : sheetPlace(); }
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
    std::optional<ModeLook> look_;
    Theme theme_;
    Theme unitTheme_;  // for the parts that are drawn scaled
    Panel panel_;
    std::unique_ptr<SearchField> field_;
    QWidget* tableClip_;  // these four belong to the panel
    ResultTable* table_;
    InfoBar* infoBar_;
    WindowButtons* buttons_;
    EdgeGrip *leftGrip_ = nullptr, *rightGrip_ = nullptr;  // these too
    QRect dragged_;                                        // the sheet when a drag began
    QVariantAnimation resizing_;
    QRect target_;                              // of the running animation
    std::vector<std::function<void()>> ended_;  // for its end
    PreviewPanel preview_;
    QTimer settling_;         // while monitors come and go
    QRect own_;               // the sheet's place by the program or the user
    Rect told_;               // the frame that the delegate knows
    bool isPlacing_ = false;  // the panel moves before its sheet has its size
};
