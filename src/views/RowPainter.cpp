#include "views/RowPainter.h"

#include <QPainter>
#include <QPainterPath>
#include <QTextLayout>

#include "views/MarkedText.h"

namespace {

constexpr double kSelectionInset = 5, kSelectionRadius = 7;
constexpr double kAttributeLine = 20;
constexpr float kDim = 0.4F;  // of a name whose folder is selected
constexpr double kThumbnailRadius = 3;
constexpr double kMarkedDot = 8, kMarkedRoom = 16;

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

void layOut(QTextLayout& layout) {
    layout.beginLayout();
    QTextLine line = layout.createLine();
    line.setLineWidth(1e6);
    line.setPosition({0, 0});
    layout.endLayout();
}

}  // namespace

RowPainter::RowPainter(const Theme* theme)
    : theme_(theme), nameMetrics_(theme->nameMarkFont), pathMetrics_(theme->pathMarkFont) {}

void RowPainter::draw(QPainter& painter, const QRectF& row, const RowContent& content, Look look) {
    painter.setRenderHint(QPainter::Antialiasing);
    if (look != Look::plain) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(look == Look::selected ? theme_->selection : theme_->otherSelection);
        painter.drawRoundedRect(row.adjusted(kSelectionInset, 0, -kSelectionInset, 0),
                                kSelectionRadius, kSelectionRadius);
    }
    const QRectF icon(row.left() + kIconLeft, row.top() + (row.height() - kIconSize) / 2, kIconSize,
                      kIconSize);
    const double scale = painter.device()->devicePixelRatioF();
    if (content.thumbnail)
        drawThumbnail(painter, icon, content.thumbnail);
    else
        painter.drawPixmap(icon.topLeft(), icons_.pixmap(content.iconName, kIconSize, scale));
    drawBadges(painter, icon, row, content, look);

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
    const double x = row.left() + kTextLeft;
    const double width =
        row.width() - kTextLeft - kRightInset - (content.isMarked ? kMarkedRoom : 0);
    const auto widthOf = [](const QFontMetricsF& metrics) {
        return [&metrics](const QString& text) { return metrics.horizontalAdvance(text); };
    };
    const MarkedText shownName = elidedAroundMarks(
        {plainText(content.name, theme_->hasControlPictures), content.nameHighlights}, width,
        widthOf(nameMetrics_));
    if (content.path.empty()) {
        const double middle = row.center().y() + nameMetrics_.capHeight() / 2;
        drawLine(painter, shownName, name, x, middle, width);
        return;
    }
    drawLine(painter, shownName, name, x, row.top() + 20, width);
    const MarkedText shownPath = isolatingPathComponents(elidedAroundMarks(
        {plainText(content.path, theme_->hasControlPictures),
         content.pathSelection ? std::vector{*content.pathSelection} : content.pathHighlights},
        width, widthOf(pathMetrics_)));
    drawLine(painter, shownPath, path, x, row.top() + 39, width);
    double y = row.top() + 39;
    for (const RowLine& attributes : content.attributes)
        drawAttributes(painter, attributes, selected, x, y += kAttributeLine, width);
}

void RowPainter::drawThumbnail(QPainter& painter, const QRectF& icon,
                               const std::shared_ptr<const Picture>& thumbnail) {
    const double scale = painter.device()->devicePixelRatioF();
    const QPixmap pixmap = icons_.pixmap(thumbnail, kIconSize, scale);
    const QSizeF size = QSizeF(pixmap.size()) / scale;
    QRectF place(QPointF(), size);
    place.moveCenter(icon.center());
    place.moveTopLeft(place.topLeft().toPoint());
    QPainterPath edge;
    edge.addRoundedRect(place, kThumbnailRadius, kThumbnailRadius);
    painter.save();
    painter.setClipPath(edge, Qt::IntersectClip);
    painter.drawPixmap(place.topLeft(), pixmap);
    painter.restore();
    // So that a white page does not melt into a white window.
    painter.setPen(QPen(theme_->border, 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(place.adjusted(0.5, 0.5, -0.5, -0.5), kThumbnailRadius,
                            kThumbnailRadius);
}

void RowPainter::drawAttributes(QPainter& painter, const RowLine& attributes, bool selected,
                                double x, double y, double width) {
    QString text = plainText(attributes.text, theme_->hasControlPictures);
    if (!theme_->hasPictures) text = inPlainSymbols(text);
    constexpr int kLargest = 12, kSmallest = 10;
    for (int pixels = kLargest; pixels >= kSmallest; --pixels) {
        const QFont plain = Theme::attributeFont(theme_->info13, pixels, false);
        const QFont marked = Theme::attributeFont(theme_->info13, pixels, true);
        const QFontMetricsF plainMetrics(plain), markedMetrics(marked);
        double needed = plainMetrics.horizontalAdvance(text);
        for (const TextRange& mark : attributes.highlights) {
            const QString part = text.mid(int(mark.location), int(mark.length));
            needed += markedMetrics.horizontalAdvance(part) - plainMetrics.horizontalAdvance(part);
        }
        if (needed > width && pixels > kSmallest) continue;
        const Line line{plain, marked, selected ? theme_->selectedPath : theme_->info,
                        selected ? theme_->selectedText : theme_->accent, Qt::LeftToRight};
        MarkedText shown{text, attributes.highlights};
        if (needed > width)
            shown = elidedAroundMarks(shown, width, [&markedMetrics](const QString& part) {
                return markedMetrics.horizontalAdvance(part);
            });
        return drawLine(painter, shown, line, x, y, width);
    }
}

void RowPainter::drawLine(QPainter& painter, const MarkedText& text, const Line& line, double x,
                          double y, double width) {
    QTextLayout layout(text.text, line.font, painter.device());
    QTextOption option;
    option.setWrapMode(QTextOption::NoWrap);
    option.setTextDirection(line.direction);
    // Always at the left, where the eye looks for it, whatever the script.
    option.setAlignment(Qt::AlignLeft | Qt::AlignAbsolute);
    layout.setTextOption(option);
    QList<QTextLayout::FormatRange> formats;
    QTextCharFormat marked;
    marked.setFont(line.markFont);
    marked.setForeground(line.markColour);
    marked.setFontUnderline(true);
    for (const TextRange& mark : text.marks)
        formats.append({int(mark.location), int(mark.length), marked});
    layout.setFormats(formats);
    layOut(layout);
    painter.setPen(line.colour);
    layout.draw(&painter, {x, y - layout.lineAt(0).ascent()}, {}, QRectF(x, y - 40, width + 2, 80));
}

void RowPainter::drawBadges(QPainter& painter, const QRectF& icon, const QRectF& row,
                            const RowContent& content, Look look) {
    if (content.isLink) {
        const QPointF centre = icon.bottomLeft() + QPointF(6.5, -6.5);
        painter.setPen(QPen(QColor(0, 0, 0, 60), 1));
        painter.setBrush(QColor(252, 253, 255));
        painter.drawEllipse(centre, 6.5, 6.5);
        painter.setPen(QPen(QColor(50, 75, 105), 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.setBrush(Qt::NoBrush);
        QPainterPath arrow(centre + QPointF(-2.8, 3.0));
        arrow.quadTo(centre + QPointF(-2.6, -0.8), centre + QPointF(2.4, -1.2));
        arrow.moveTo(centre + QPointF(0.2, -3.6));
        arrow.lineTo(centre + QPointF(2.8, -1.2));
        arrow.lineTo(centre + QPointF(0.2, 1.2));
        painter.drawPath(arrow);
    }
    if (content.isMarked) {
        const QPointF centre(row.right() - kRightInset - kMarkedDot / 2, row.center().y());
        painter.setPen(Qt::NoPen);
        painter.setBrush(look == Look::selected ? theme_->selectedText : theme_->accent);
        painter.drawEllipse(centre, kMarkedDot / 2, kMarkedDot / 2);
    }
}
