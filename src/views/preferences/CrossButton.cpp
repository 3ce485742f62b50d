#include "views/preferences/CrossButton.h"

#include <QKeyEvent>
#include <QPainter>

#include "views/Controls.h"
#include "views/Theme.h"

namespace {
constexpr int kSize = 26;
constexpr double kRadius = 6, kArm = 4;
}  // namespace

CrossButton::CrossButton(const QString& name, const Theme* theme, QWidget* parent)
    : QAbstractButton(parent), theme_(theme) {
    setAccessibleName(name);
    setToolTip(name);
    setFixedSize(theme->scaled(kSize), theme->scaled(kSize));
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
}

void CrossButton::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        click();
    else
        QAbstractButton::keyPressEvent(event);
}

void CrossButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF place = QRectF(rect()).adjusted(1, 1, -1, -1);
    if (underMouse() || isDown()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(theme_->otherSelection);
        painter.drawRoundedRect(place, kRadius, kRadius);
    }
    painter.setPen(
        QPen(underMouse() ? theme_->fieldText : theme_->info, 1.5, Qt::SolidLine, Qt::RoundCap));
    const QPointF middle = place.center();
    const double arm = kArm * theme_->zoom;
    painter.drawLine(middle - QPointF(arm, arm), middle + QPointF(arm, arm));
    painter.drawLine(middle - QPointF(arm, -arm), middle + QPointF(arm, -arm));
    if (hasFocus()) drawFocusRing(painter, place, kRadius, *theme_);
}
