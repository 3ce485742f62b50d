#pragma once
#include <QFont>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "screen/RowAction.h"
#include "screen/RowContent.h"
#include "views/IconCache.h"
#include "views/IconShade.h"
#include "views/LetterWidths.h"
#include "views/ShapedLines.h"
#include "views/Theme.h"

class QPainter;
struct MarkedText;

/// Draws one row of the result table: icon, file name, and the folder below it, with the matched
/// letters marked; too long texts lose their middle.
/// Owner:   ResultTable. Threads: main. Units: logical pixels.
class RowPainter {
  public:
    enum class Look { plain, selected, selectedWithoutKeyboard };
    // At a text scale of 1. From right to left where the painter's layout goes that way.
    static constexpr int kIconLeft = 15, kIconSize = 32, kTextLeft = 59, kRightInset = 17;

    /// theme: with fonts in units.
    RowPainter(const Theme* theme, IconCache& icons);
    /// What is drawn beyond the content.
    struct Extras {
        bool isBrokenLink = false;
        std::optional<RowAction> action = {};
    };
    /// Where the icon of its action is in a row at this place, which is drawn from right to left or
    /// not.
    QRectF actionPlace(const QRectF& place, const RowContent& content,
                       Qt::LayoutDirection direction) const;
    void draw(QPainter& painter, const QRectF& place, const RowContent& content, Look look,
              const Extras& extras = {false, std::nullopt});

  private:
    struct Line {
        QFont font, markFont;
        QColor colour, markColour;
        Qt::LayoutDirection direction;
    };
    static QRectF mirrored(const QPainter& painter, QRectF part, const QRectF& row);
    static QRectF actionInUnits(const QRectF& row, const RowContent& content);
    void drawAction(QPainter& painter, const QRectF& icon, const RowAction& action, Look look);
    void drawInUnits(QPainter& painter, const QRectF& row, const RowContent& content, Look look,
                     const Extras& extras);
    void drawGround(QPainter& painter, const QRectF& row, Look look) const;
    /// Base line of the text at y. Where it ends.
    double drawLine(QPainter& painter, const MarkedText& text, const Line& line, double x, double y,
                    double width);
    void drawName(QPainter& painter, const RowContent& content, const Line& line,
                  const QColor& suffixColour, const QRectF& place, double y);
    void drawIcon(QPainter& painter, const QRectF& place, const std::string& name, Look look);
    /// In the middle of the icon's place.
    void drawThumbnail(QPainter& painter, const QRectF& icon,
                       const std::shared_ptr<const Picture>& thumbnail);
    /// In the largest font in which it fits, the middle left out if it fits in none.
    void drawAttributes(QPainter& painter, const RowLine& attributes, bool selected, double x,
                        double y, double width);
    static void drawLinkEmblem(QPainter& painter, const QPointF& centre, bool isBroken);
    void drawBadges(QPainter& painter, const QRectF& icon, const QRectF& row,
                    const RowContent& content, Look look, const Extras& extras);

    const Theme* theme_;
    IconCache& icons_;
    IconShade shade_;
    ShapedLines shapedLines_;
    QFont suffixFont_;  // of a remark behind the name
    const double nameCap_;
    const LetterWidths nameWidths_, pathWidths_;  // of the heavier, wider faces
    const LetterWidths attributeWidths_, attributeMarkWidths_;
    std::vector<std::pair<QFont, QFont>> attributeFonts_;  // with those of marks, ever smaller
};
