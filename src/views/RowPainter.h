#pragma once
#include <QFontMetricsF>
#include <memory>

#include "screen/RowContent.h"
#include "views/IconCache.h"
#include "views/Theme.h"

class QPainter;
struct MarkedText;

/// Draws one row of the result table: icon, file name, and the folder below it, with the matched
/// letters marked; too long texts lose their middle.
/// Owner:   ResultTable. Threads: main. Units: logical pixels.
class RowPainter {
  public:
    enum class Look { plain, selected, selectedWithoutKeyboard };
    static constexpr int kIconLeft = 15, kIconSize = 32, kTextLeft = 59, kRightInset = 17;

    explicit RowPainter(const Theme* theme);
    void draw(QPainter& painter, const QRectF& row, const RowContent& content, Look look);
    IconCache& icons() { return icons_; }

  private:
    struct Line {
        QFont font, markFont;
        QColor colour, markColour;
        Qt::LayoutDirection direction;
    };
    /// Base line of the text at y.
    void drawLine(QPainter& painter, const MarkedText& text, const Line& line, double x, double y,
                  double width);
    /// In the middle of the icon's place.
    void drawThumbnail(QPainter& painter, const QRectF& icon,
                       const std::shared_ptr<const Picture>& thumbnail);
    /// In the largest font in which it fits, the middle left out if it fits in none.
    void drawAttributes(QPainter& painter, const RowLine& attributes, bool selected, double x,
                        double y, double width);
    void drawBadges(QPainter& painter, const QRectF& icon, const QRectF& row,
                    const RowContent& content, Look look);

    const Theme* theme_;
    IconCache icons_;
    QFontMetricsF nameMetrics_, pathMetrics_;  // of the heavier, wider faces
};
