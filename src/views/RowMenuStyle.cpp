#include "views/RowMenuStyle.h"

#include <QPainter>
#include <QStyleOption>

namespace {

constexpr int kPadding = 5, kRow = 28, kSeparator = 9, kInset = 10, kIconGap = 9, kKeysGap = 32,
              kArrow = 14;
constexpr double kRadius = 8, kItemRadius = 5;

}  // namespace

RowMenuStyle::RowMenuStyle() : QProxyStyle(QStringLiteral("fusion")) {}

void RowMenuStyle::setTheme(const Theme& theme, bool isRounded) {
    theme_ = theme;
    isRounded_ = isRounded;
}

int RowMenuStyle::textLeft(const QStyleOptionMenuItem& item) const {
    return theme_.scaled(kInset) + (item.maxIconWidth > 0 ? icon() + theme_.scaled(kIconGap) : 0);
}

int RowMenuStyle::pixelMetric(PixelMetric metric, const QStyleOption* option,
                              const QWidget* widget) const {
    switch (metric) {
        case PM_MenuPanelWidth:
            return 0;
        case PM_MenuHMargin:
        case PM_MenuVMargin:
            return theme_.scaled(kPadding);
        case PM_SubMenuOverlap:
            return -2;
        case PM_SmallIconSize:
            return icon();
        default:
            return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

int RowMenuStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                            QStyleHintReturn* returned) const {
    if (hint == SH_Menu_AllowActiveAndDisabled || hint == SH_Menu_FlashTriggeredItem) return 0;
    if (hint == SH_Menu_MouseTracking || hint == SH_Menu_SloppySubMenus) return 1;
    return QProxyStyle::styleHint(hint, option, widget, returned);
}

QSize RowMenuStyle::sizeFromContents(ContentsType type, const QStyleOption* option,
                                     const QSize& contents, const QWidget* widget) const {
    const auto* const item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
    if (type != CT_MenuItem || !item)
        return QProxyStyle::sizeFromContents(type, option, contents, widget);
    if (item->menuItemType == QStyleOptionMenuItem::Separator)
        return {1, theme_.scaled(kSeparator)};
    // The menu adds the width of the widest keys.
    const QString title = item->text.section(QLatin1Char('\t'), 0, 0);
    const QSize text = item->fontMetrics.size(Qt::TextShowMnemonic | Qt::TextSingleLine, title);
    const bool hasMore = item->menuItemType == QStyleOptionMenuItem::SubMenu;
    const int inset = theme_.scaled(kInset);
    const int behind = item->reservedShortcutWidth > 0 || hasMore ? theme_.scaled(kKeysGap) : inset;
    return {textLeft(*item) + text.width() + behind + inset,
            std::max(theme_.scaled(kRow), text.height() + 10)};
}

void RowMenuStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                                 QPainter* painter, const QWidget* widget) const {
    if (element == PE_FrameMenu) return;
    if (element != PE_PanelMenu) {
        QProxyStyle::drawPrimitive(element, option, painter, widget);
        return;
    }
    const double radius = isRounded_ ? kRadius : 0;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(QPen(theme_.border, 1));
    painter->setBrush(theme_.background);
    painter->drawRoundedRect(QRectF(option->rect).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    painter->restore();
}

void RowMenuStyle::drawControl(ControlElement element, const QStyleOption* option,
                               QPainter* painter, const QWidget* widget) const {
    if (element == CE_MenuEmptyArea || element == CE_MenuHMargin || element == CE_MenuVMargin)
        return;
    const auto* const item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
    if (element != CE_MenuItem || !item) {
        QProxyStyle::drawControl(element, option, painter, widget);
        return;
    }
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    drawItem(*item, *painter);
    painter->restore();
}

void RowMenuStyle::drawItem(const QStyleOptionMenuItem& item, QPainter& painter) const {
    const QRect& row = item.rect;
    const int inset = theme_.scaled(kInset), arrowWidth = theme_.scaled(kArrow);
    if (item.menuItemType == QStyleOptionMenuItem::Separator) {
        painter.fillRect(row.left() + inset, row.center().y(), row.width() - 2 * inset, 1,
                         theme_.separator);
        return;
    }
    const bool isEnabled = item.state & State_Enabled;
    const bool isChosen = isEnabled && (item.state & State_Selected);
    QColor text = isChosen ? theme_.selectedText : theme_.fieldText;
    QColor keys = isChosen ? theme_.selectedPath : theme_.info;
    if (!isEnabled) text.setAlphaF(0.42F), keys.setAlphaF(0.55F);
    if (isChosen) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(theme_.selection);
        painter.drawRoundedRect(QRectF(row), kItemRadius, kItemRadius);
    }
    const auto place = [&](int left, int width) {
        return visualRect(item.direction, row,
                          QRect(row.left() + left, row.top(), width, row.height()));
    };
    if (!item.icon.isNull()) {
        const QRect square =
            alignedRect(item.direction, Qt::AlignCenter, {icon(), icon()}, place(inset, icon()));
        item.icon.paint(&painter, square, Qt::AlignCenter,
                        isEnabled ? QIcon::Normal : QIcon::Disabled);
    }
    const int left = textLeft(item);
    const QRect texts = place(left, row.width() - left - inset);
    constexpr int kFlags = Qt::AlignVCenter | Qt::TextSingleLine | Qt::TextHideMnemonic;
    painter.setFont(item.font);
    painter.setPen(text);
    painter.drawText(texts, kFlags | int(visualAlignment(item.direction, Qt::AlignLeft)),
                     item.text.section(QLatin1Char('\t'), 0, 0));
    painter.setPen(keys);
    painter.drawText(texts, kFlags | int(visualAlignment(item.direction, Qt::AlignRight)),
                     item.text.section(QLatin1Char('\t'), 1));
    if (item.menuItemType != QStyleOptionMenuItem::SubMenu) return;
    const QRect arrow = place(row.width() - inset - arrowWidth + 4, arrowWidth);
    const double towards = item.direction == Qt::RightToLeft ? -2 : 2;
    const QPointF tip = QRectF(arrow).center() + QPointF(towards, 0.5);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(keys, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(
        QPolygonF({tip - QPointF(2 * towards, 4), tip, tip - QPointF(2 * towards, -4)}));
}
