#include "views/Controls.h"

#include <QKeyEvent>
#include <QPainter>
#include <QStyle>
#include <algorithm>

#include "views/Contrast.h"
#include "views/Theme.h"

namespace {
constexpr int kButtonHeight = 32, kButtonInset = 18, kLeastButton = 84;
constexpr double kRadius = 7;
constexpr int kBox = 16, kBoxGap = 9;
}  // namespace

void drawFocusRing(QPainter& painter, const QRectF& place, double radius, const Theme& theme) {
    QColor ring = theme.accent;
    ring.setAlphaF(0.75F);
    painter.setPen(QPen(ring, 2));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(place, radius, radius);
}

SheetButton::SheetButton(const QString& text, Kind kind, const Theme* theme, QWidget* parent)
    : QAbstractButton(parent), kind_(kind), theme_(theme) {
    setText(text);
    setFont(theme->info13);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAttribute(Qt::WA_Hover);
}

QSize SheetButton::sizeHint() const {
    const int text = fontMetrics().horizontalAdvance(this->text());
    return {std::max(theme_->scaled(kLeastButton), text + 2 * theme_->scaled(kButtonInset)),
            theme_->scaled(kButtonHeight)};
}

void SheetButton::keyPressEvent(QKeyEvent* event) {
    // Qt would take Space with any of them for a click.
    if (event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) {
        event->ignore();
        return;
    }
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        click();
        return;
    }
    QAbstractButton::keyPressEvent(event);
}

void SheetButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (!isEnabled()) painter.setOpacity(0.4);
    const QRectF place = QRectF(rect()).adjusted(2, 2, -2, -2);
    const bool isMain = kind_ == Kind::main;
    QColor ground = isMain ? theme_->selection : theme_->otherSelection;
    if (isDown())
        ground = ground.darker(118);
    else if (underMouse() && isEnabled())
        ground = theme_->dark && !isMain ? ground.lighter(125) : ground.darker(107);
    painter.setPen(isMain ? QPen(Qt::NoPen) : QPen(theme_->border, 1));
    painter.setBrush(ground);
    painter.drawRoundedRect(place.adjusted(0.5, 0.5, -0.5, -0.5), kRadius, kRadius);
    painter.setPen(isMain ? theme_->selectedText : theme_->fieldText);
    painter.setFont(font());
    painter.drawText(place, Qt::AlignCenter | Qt::TextSingleLine, text());
    if (hasFocus())
        drawFocusRing(painter, QRectF(rect()).adjusted(1, 1, -1, -1), kRadius + 1, *theme_);
}

SheetCheckBox::SheetCheckBox(const QString& text, const Theme* theme, QWidget* parent)
    : QAbstractButton(parent), theme_(theme) {
    setText(text);
    setFont(theme->info13);
    setCheckable(true);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize SheetCheckBox::sizeHint() const {
    const int width = textLeft() + fontMetrics().horizontalAdvance(text()) + 4;
    return {width, std::max(theme_->scaled(kBox + 8), fontMetrics().height())};
}

int SheetCheckBox::textLeft() const {
    return theme_->scaled(kBox + 4 + kBoxGap);
}

void SheetCheckBox::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const int side = theme_->scaled(kBox);
    const auto placed = [this](const QRect& part) {
        return QRectF(QStyle::visualRect(layoutDirection(), rect(), part));
    };
    const QRectF box =
        placed({2, (height() - side) / 2, side, side}).adjusted(0.5, 0.5, -0.5, -0.5);
    painter.setPen(QPen(isChecked() ? theme_->selection : theme_->info, 1.2));
    painter.setBrush(isChecked() ? theme_->selection : QColor(Qt::transparent));
    painter.drawRoundedRect(box, 4, 4);
    if (isChecked()) {
        painter.setPen(QPen(theme_->selectedText, 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.drawPolyline(QPolygonF({box.topLeft() + QPointF(3.6, 7.8) * theme_->zoom,
                                        box.topLeft() + QPointF(6.5, 10.6) * theme_->zoom,
                                        box.topLeft() + QPointF(11.6, 4.8) * theme_->zoom}));
    }
    painter.setPen(theme_->fieldText);
    const auto start = QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft);
    painter.drawText(placed({textLeft(), 0, width() - textLeft(), height()}),
                     int(start | Qt::AlignAbsolute | Qt::AlignVCenter) | Qt::TextSingleLine,
                     text());
    if (hasFocus()) drawFocusRing(painter, box.adjusted(-1.5, -1.5, 1.5, 1.5), 5, *theme_);
}

QLabel* makeLabel(QWidget* parent, const QString& text, const QFont& font, const QColor& colour,
                  int wrapWidth) {
    auto* const label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText);
    label->setText(text);
    label->setFont(font);
    setLabelColour(*label, colour);
    if (wrapWidth > 0) {
        label->setWordWrap(true);
        label->setFixedWidth(wrapWidth);
        // An empty text has no height of its own.
        label->setFixedHeight(
            std::max(label->heightForWidth(wrapWidth), QFontMetrics(font).height()));
    }
    return label;
}

void setLabelColour(QLabel& label, const QColor& colour) {
    QPalette colours = label.palette();
    colours.setColor(QPalette::WindowText, colour);
    label.setPalette(colours);
}
