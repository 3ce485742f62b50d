#pragma once
#include <QWidget>
#include <array>
#include <functional>
#include <vector>

#include "screen/IndicatorsView.h"

struct Theme;

/// The buttons at the right end of the info bar: what limits the result, drawn small; strong where
/// it holds. They never take the keyboard.
/// Owner:   InfoBar. Threads: main.
class IndicatorRow : public QWidget, public IndicatorsView {
  public:
    explicit IndicatorRow(QWidget* parent, std::function<void()> widthChanged);
    /// With fonts in units.
    void setTheme(const Theme* theme);
    /// At a text scale of 1; 0 while no button is shown.
    int neededWidth() const;
    /// As they are laid out, of those that are shown.
    std::vector<QWidget*> buttons() const;

    // IndicatorsView
    void setDelegate(IndicatorsViewDelegate* delegate) override { delegate_ = delegate; }
    void setIndicator(IndicatorButton button, const IndicatorContent& content) override;

  protected:
    void resizeEvent(QResizeEvent*) override { layOut(); }

  private:
    class Button;
    void layOut();

    const std::function<void()> widthChanged_;
    IndicatorsViewDelegate* delegate_ = nullptr;
    std::array<Button*, kIndicatorButtons> buttons_;  // children
};
