#pragma once
#include <functional>

#include "screen/PreviewView.h"
#include "views/Panel.h"
#include "views/PreviewBody.h"
#include "views/WindowSystem.h"

/// The preview's window: beside the search window, on the side with more room, its upper edge level
/// with that one's. It never takes the keyboard.
/// Owner:   SearchWindow. Threads: main.
class PreviewPanel : public PreviewView {
  public:
    /// Where the search window is; asked when the panel is placed.
    struct Neighbour {
        std::function<QRect()> sheet, screen;
        std::function<QWidget*()> window;
    };
    PreviewPanel(const WindowSystem& system, Neighbour neighbour);
    void setTheme(const Theme* theme);
    /// The search window has moved or has another size.
    void neighbourMoved();
    QWidget* widget() { return &panel_; }

    // PreviewView
    void show() override;
    void hide() override { panel_.hide(); }
    bool isVisible() const override { return panel_.isVisible(); }
    void setContent(const PreviewContent& content) override { body_->setContent(content); }
    uint32_t picturePixels() const override { return body_->picturePixels(); }

    /// The place of a sheet beside another one on a screen, at a text scale.
    static QRect placeBeside(const QRect& sheet, const QRect& screen, double zoom = 1);

  private:
    void place();

    const WindowSystem system_;
    const Neighbour neighbour_;
    Panel panel_;
    PreviewBody* const body_;  // belongs to the panel
    double zoom_ = 1;
};
