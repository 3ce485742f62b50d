#pragma once
#include <QProxyStyle>
#include <QStyleOptionMenuItem>

#include "views/Theme.h"

/// How our menus look: a rounded sheet in the colours of a theme, keys dimmer than what they do.
/// Owner:   RowMenu; outlives its menus. Threads: main.
class RowMenuStyle : public QProxyStyle {
  public:
    RowMenuStyle();
    /// isRounded: what is behind the corners is seen.
    void setTheme(const Theme& theme, bool isRounded);
    const Theme& theme() const { return theme_; }
    /// The side of an icon.
    int icon() const { return theme_.scaled(16); }

    int pixelMetric(PixelMetric metric, const QStyleOption* option,
                    const QWidget* widget) const override;
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returned) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                           const QWidget* widget) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;

  private:
    int textLeft(const QStyleOptionMenuItem& item) const;
    void drawItem(const QStyleOptionMenuItem& item, QPainter& painter) const;

    Theme theme_;
    bool isRounded_ = false;
};
