#include "views/RowPainter.h"

#include <QPainter>
#include <QPainterPath>
#include <QTextLayout>
#include <algorithm>
#include <cmath>
#include <iterator>

#include "views/ActionSymbols.h"
#include "views/MarkedText.h"

namespace {

constexpr double kSelectionInset = 5, kSelectionRadius = 7;
constexpr double kAttributeLine = 20, kNameAndPath = 47;
constexpr float kDim = 0.4F;  // of a name whose folder is selected
constexpr double kThumbnailRadius = 3;
constexpr double kMarkedDot = 8, kMarkedRoom = 16;
constexpr int kActionSize = 22, kSymbolSize = 18, kActionGap = 10;
constexpr double kFrame = 2;  // around a selection in high contrast
constexpr int kSuffixPixels = 12;

/// Of a line of metadata: fonts become narrower before they become too small to read.
struct Size {
    int pixels, stretch;
};
constexpr Size kSizes[] = {{12, 100}, {12, 93}, {11, 100}, {11, 93}, {11, 87}};

/// For desktops without a font of coloured pictures. As long as before, in units.
QString inPlainSymbols(QString text) {
    constexpr QChar kNoWidth(0x200B);
    constexpr std::pair<char32_t, char16_t> kSymbols[] = {
        {U'✨', u'★'}, {U'📎', u'⚙'}, {U'👁', u'◉'}, {U'👤', u'☺'},
        {U'👥', u'☻'}, {U'🔒', u'▣'}, {U'🔗', u'∞'},
    };
    for (const auto& [picture, symbol] : kSymbols) {
        const QString old = QString::fromUcs4(&picture, 1);
        QString plain{QChar(symbol)};
        if (old.size() == 2) plain += kNoWidth;
        text.replace(old, plain);
    }
    return text.replace(QChar(0xFE0F), kNoWidth);  // asks for a picture
}

/// Around the origin.
void drawSheets(QPainter& painter) {
    painter.drawRoundedRect(QRectF(-6, -6, 8, 9), 1.5, 1.5);
    painter.drawPolyline(QPolygonF({{4.5, -3.5}, {6, -3.5}, {6, 6}, {-3, 6}, {-3, 5}}));
}

void drawScissors(QPainter& painter) {
    painter.drawLine(QPointF(-4.5, -6.5), QPointF(2.2, 3));
    painter.drawLine(QPointF(4.5, -6.5), QPointF(-2.2, 3));
    painter.drawEllipse(QPointF(-3.4, 4.6), 2.1, 2.1);
    painter.drawEllipse(QPointF(3.4, 4.6), 2.1, 2.1);
}

}  // namespace

RowPainter::RowPainter(const Theme* theme, IconCache& icons)
    : theme_(theme),
      icons_(icons),
      suffixFont_(theme->pathFont),
      nameCap_(QFontMetricsF(theme->nameMarkFont).capHeight()),
      nameWidths_(theme->nameMarkFont),
      pathWidths_(theme->pathMarkFont),
      attributeWidths_(Theme::attributeFont(theme->info13, kSizes[0].pixels, false)),
      attributeMarkWidths_(Theme::attributeFont(theme->info13, kSizes[0].pixels, true)) {
    suffixFont_.setPixelSize(kSuffixPixels);
    for (const Size& size : kSizes) {
        auto& fonts =
            attributeFonts_.emplace_back(Theme::attributeFont(theme->info13, size.pixels, false),
                                         Theme::attributeFont(theme->info13, size.pixels, true));
        fonts.first.setStretch(size.stretch);
        fonts.second.setStretch(size.stretch);
    }
}

void RowPainter::draw(QPainter& painter, const QRectF& place, const RowContent& content, Look look,
                      const Extras& extras) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(place.topLeft());
    painter.scale(theme_->zoom, theme_->zoom);
    drawInUnits(painter, {QPointF(), place.size() / theme_->zoom}, content, look, extras);
    painter.restore();
}

QRectF RowPainter::mirrored(const QPainter& painter, QRectF part, const QRectF& row) {
    if (painter.layoutDirection() == Qt::RightToLeft)
        part.moveLeft(row.left() + row.right() - part.right());
    return part;
}

void RowPainter::drawGround(QPainter& painter, const QRectF& row, Look look) const {
    if (look == Look::plain) return;
    QRectF ground = row.adjusted(kSelectionInset, 0, -kSelectionInset, 0);
    painter.setPen(Qt::NoPen);
    if (theme_->highContrast) {
        painter.setPen(QPen(theme_->accent, kFrame));
        ground.adjust(kFrame / 2, kFrame / 2, -kFrame / 2, -kFrame / 2);
    }
    painter.setBrush(look == Look::selected ? theme_->selection : theme_->otherSelection);
    painter.drawRoundedRect(ground, kSelectionRadius, kSelectionRadius);
}

void RowPainter::drawInUnits(QPainter& painter, const QRectF& row, const RowContent& content,
                             Look look, const Extras& extras) {
    drawGround(painter, row, look);
    const QRectF icon = mirrored(
        painter,
        {row.left() + kIconLeft, row.top() + (row.height() - kIconSize) / 2, kIconSize, kIconSize},
        row);
    constexpr double kCut = 0.5;  // how strong the icon of what is to go away is
    if (content.source == RowContent::Source::move) painter.setOpacity(kCut);
    if (content.thumbnail)
        drawThumbnail(painter, icon, content.thumbnail);
    else
        drawIcon(painter, icon, content.iconName, look);
    painter.setOpacity(1);
    drawBadges(painter, icon, row, content, look, extras);

    const bool selected = look == Look::selected;
    Line name{theme_->nameFont, theme_->nameMarkFont,
              selected ? theme_->selectedText : theme_->name,
              selected ? theme_->selectedText : theme_->nameMark, Qt::LayoutDirectionAuto};
    const Line path{theme_->pathFont, theme_->pathMarkFont,
                    selected ? theme_->selectedPath : theme_->path,
                    selected ? theme_->selectedText : theme_->pathMark, Qt::LeftToRight};
    if (content.pathSelection) {
        name.colour.setAlphaF(kDim);
        name.markColour.setAlphaF(kDim);
    }
    const double wide =
        row.width() - kTextLeft - kRightInset - (content.isMarked ? kMarkedRoom : 0);
    double width = wide;
    if (look != Look::plain && extras.action) {
        drawAction(painter, mirrored(painter, actionInUnits(row, content), row), *extras.action,
                   look);
        width -= kActionSize + kActionGap;
    }
    const auto placeOf = [&](double part) {
        return mirrored(painter, {row.left() + kTextLeft, row.top(), part, row.height()}, row);
    };
    const double x = placeOf(width).left();
    const double nameLine = content.path.empty() ? row.center().y() + nameCap_ / 2 : row.top() + 20;
    drawName(painter, content, name, path.colour, {x, row.top(), width, row.height()}, nameLine);
    if (content.path.empty()) return;
    const MarkedText shownPath = isolatingPathComponents(elidedAroundMarks(
        {plainText(content.path, theme_->hasControlPictures),
         content.pathSelection ? std::vector{*content.pathSelection} : content.pathHighlights},
        width, pathWidths_));
    drawLine(painter, shownPath, path, x, row.top() + 39, width);
    double y = row.top() + 39;
    for (const RowLine& attributes : content.attributes)
        drawAttributes(painter, attributes, selected, placeOf(wide).left(), y += kAttributeLine,
                       wide);
}

QRectF RowPainter::actionInUnits(const QRectF& row, const RowContent& content) {
    const double right = row.right() - kRightInset - (content.isMarked ? kMarkedRoom : 0);
    // Beside name and path: the lines of metadata need all the width that there is.
    const double height = std::min(row.height(), kNameAndPath);
    return {right - kActionSize, std::round(row.top() + (height - kActionSize) / 2), kActionSize,
            kActionSize};
}

QRectF RowPainter::actionPlace(const QRectF& place, const RowContent& content,
                               Qt::LayoutDirection direction) const {
    QRectF part = actionInUnits({QPointF(), place.size() / theme_->zoom}, content);
    if (direction == Qt::RightToLeft) part.moveLeft(place.width() / theme_->zoom - part.right());
    return {place.topLeft() + part.topLeft() * theme_->zoom, part.size() * theme_->zoom};
}

void RowPainter::drawAction(QPainter& painter, const QRectF& icon, const RowAction& action,
                            Look look) {
    if (!action.iconName.empty()) {
        const double scale = painter.device()->devicePixelRatioF() * theme_->zoom;
        const QPixmap picture = icons_.applicationPixmap(action.iconName, kActionSize, scale);
        if (!picture.isNull()) {
            QRectF place(QPointF(), QSizeF(picture.size()) / scale);
            place.moveCenter(icon.center());
            painter.drawPixmap(place, picture, picture.rect());
            return;
        }
    }
    constexpr double kInset = (kActionSize - kSymbolSize) / 2.0;
    ActionSymbols::draw(painter, icon.adjusted(kInset, kInset, -kInset, -kInset), action.symbol,
                        look == Look::selected ? theme_->selectedText : theme_->name);
}

void RowPainter::drawIcon(QPainter& painter, const QRectF& place, const std::string& name,
                          Look look) {
    const double scale = painter.device()->devicePixelRatioF() * theme_->zoom;
    const QPixmap picture = icons_.pixmapAtOnce(name, kIconSize, scale);
    if (!theme_->dark && look != Look::selected) shade_.draw(painter, place, picture);
    painter.drawPixmap(place, picture, picture.rect());
}

void RowPainter::drawThumbnail(QPainter& painter, const QRectF& icon,
                               const std::shared_ptr<const Picture>& thumbnail) {
    const double scale = painter.device()->devicePixelRatioF() * theme_->zoom;
    const QPixmap pixmap = icons_.pixmap(thumbnail, kIconSize, scale);
    const QSizeF size = QSizeF(pixmap.size()) / scale;
    QRectF place(QPointF(), size);
    place.moveCenter(icon.center());
    place.moveTopLeft(place.topLeft().toPoint());
    QPainterPath edge;
    edge.addRoundedRect(place, kThumbnailRadius, kThumbnailRadius);
    painter.save();
    painter.setClipPath(edge, Qt::IntersectClip);
    painter.drawPixmap(place, pixmap, pixmap.rect());
    painter.restore();
    // So that a white page does not melt into a white window.
    painter.setPen(QPen(theme_->border, 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(place.adjusted(0.5, 0.5, -0.5, -0.5), kThumbnailRadius,
                            kThumbnailRadius);
}

void RowPainter::drawName(QPainter& painter, const RowContent& content, const Line& line,
                          const QColor& suffixColour, const QRectF& place, double y) {
    QString name = plainText(content.name, theme_->hasControlPictures);
    QString suffix = name.right(qsizetype(content.nameSuffix));
    name.chop(suffix.size());
    const bool fromRight = painter.layoutDirection() == Qt::RightToLeft;
    if (fromRight && suffix.startsWith(QLatin1Char(' '))) suffix = suffix.mid(1) + QLatin1Char(' ');
    const double suffixWidth =
        suffix.isEmpty() ? 0 : QFontMetricsF(suffixFont_).horizontalAdvance(suffix) + 1;
    const double room = place.width() - suffixWidth;
    const double used =
        drawLine(painter, elidedAroundMarks({name, content.nameHighlights}, room, nameWidths_),
                 line, place.left() + (fromRight ? suffixWidth : 0), y, room);
    if (suffix.isEmpty()) return;
    const double x = fromRight ? place.right() - used - suffixWidth : place.left() + used;
    drawLine(painter, {suffix, {}},
             {suffixFont_, suffixFont_, suffixColour, suffixColour, Qt::LeftToRight}, x, y,
             suffixWidth);
}

void RowPainter::drawAttributes(QPainter& painter, const RowLine& attributes, bool selected,
                                double x, double y, double width) {
    QString text = plainText(attributes.text, theme_->hasControlPictures);
    if (!theme_->hasPictures) text = inPlainSymbols(text);
    double needed = attributeWidths_(text);
    for (const TextRange& mark : attributes.highlights) {
        const QString part = text.mid(int(mark.location), int(mark.length));
        needed += attributeMarkWidths_(part) - attributeWidths_(part);
    }
    size_t i = 0;
    const auto shrink = [&] {
        return double(kSizes[i].pixels * kSizes[i].stretch) /
               (kSizes[0].pixels * kSizes[0].stretch);
    };
    while (needed * shrink() > width && i + 1 < std::size(kSizes)) ++i;
    MarkedText shown{text, attributes.highlights};
    if (needed * shrink() > width)
        shown = elidedAroundMarks(shown, width / shrink(), attributeMarkWidths_);
    const Line line{attributeFonts_[i].first, attributeFonts_[i].second,
                    selected ? theme_->selectedPath : theme_->info,
                    selected ? theme_->selectedText : theme_->accent, Qt::LeftToRight};
    drawLine(painter, shown, line, x, y, width);
}

double RowPainter::drawLine(QPainter& painter, const MarkedText& text, const Line& line, double x,
                            double y, double width) {
    const QTextLayout& layout =
        shapedLines_.line(text, {line.font, line.markFont, line.markColour, line.direction});
    painter.setPen(line.colour);
    const double used = layout.lineAt(0).naturalTextWidth();
    const double left =
        painter.layoutDirection() == Qt::RightToLeft ? x + std::max(0.0, width - used) : x;
    layout.draw(&painter, {left, y - layout.lineAt(0).ascent()}, {},
                QRectF(x, y - 40, width + 2, 80));
    return used;
}

void RowPainter::drawLinkEmblem(QPainter& painter, const QPointF& centre, bool isBroken) {
    const QColor paper = isBroken ? QColor(200, 45, 40) : QColor(252, 253, 255);
    const QColor ink = isBroken ? QColor(Qt::white) : QColor(50, 75, 105);
    painter.setPen(QPen(isBroken ? QColor(255, 255, 255, 200) : QColor(0, 0, 0, 60), 1));
    painter.setBrush(paper);
    painter.drawEllipse(centre, 6.5, 6.5);
    painter.setPen(QPen(ink, isBroken ? 1.9 : 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    if (isBroken) {
        painter.drawLine(centre + QPointF(-2.5, -2.5), centre + QPointF(2.5, 2.5));
        painter.drawLine(centre + QPointF(-2.5, 2.5), centre + QPointF(2.5, -2.5));
        return;
    }
    QPainterPath arrow(centre + QPointF(-2.8, 3.0));
    arrow.quadTo(centre + QPointF(-2.6, -0.8), centre + QPointF(2.4, -1.2));
    arrow.moveTo(centre + QPointF(0.2, -3.6));
    arrow.lineTo(centre + QPointF(2.8, -1.2));
    arrow.lineTo(centre + QPointF(0.2, 1.2));
    painter.drawPath(arrow);
}

void RowPainter::drawBadges(QPainter& painter, const QRectF& icon, const QRectF& row,
                            const RowContent& content, Look look, const Extras& extras) {
    if (content.isLink)
        drawLinkEmblem(painter, icon.bottomLeft() + QPointF(6.5, -6.5), extras.isBrokenLink);
    if (!content.isMarked) return;
    const QRectF dot = mirrored(painter,
                                {row.right() - kRightInset - kMarkedDot,
                                 row.center().y() - kMarkedDot / 2, kMarkedDot, kMarkedDot},
                                row);
    const QColor& colour = look == Look::selected ? theme_->selectedText : theme_->accent;
    if (content.source == RowContent::Source::none) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(colour);
        painter.drawEllipse(dot);
        return;
    }
    painter.setPen(QPen(colour, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    painter.save();
    painter.translate(dot.center());
    content.source == RowContent::Source::copy ? drawSheets(painter) : drawScissors(painter);
    painter.restore();
}
