#include "views/preferences/PopUpButton.h"

#include <QKeyEvent>
#include <QMenu>
#include <QPainter>

#include "views/Controls.h"
#include "views/Theme.h"

namespace {
constexpr int kHeight = 30, kInset = 10, kArrow = 26;
constexpr double kRadius = 6;
}  // namespace

PopUpButton::PopUpButton(const QString& name, QStringList items, const Theme* theme,
                         QWidget* parent)
    : QAbstractButton(parent), name_(name), items_(std::move(items)), theme_(theme) {
    setFont(theme->info13);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAttribute(Qt::WA_Hover);
    connect(this, &QAbstractButton::clicked, this, [this] { openMenu(); });
}

void PopUpButton::setChosen(const QString& text, std::set<int> ticked) {
    ticked_ = std::move(ticked);
    setText(text);
    setAccessibleName(name_ + QStringLiteral(": ") + text);
    update();
}

QSize PopUpButton::sizeHint() const {
    int widest = 0;
    for (const QString& item : items_)
        widest = std::max(widest, fontMetrics().horizontalAdvance(item));
    return {widest + theme_->scaled(kInset + kArrow), theme_->scaled(kHeight)};
}

void PopUpButton::openMenu() {
    auto* const menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->setFont(theme_->info13);
    menu->setMinimumWidth(width());
    for (int i = 0; i < items_.size(); ++i) {
        QAction* const action = menu->addAction(items_[i]);
        action->setCheckable(true);
        action->setChecked(ticked_.contains(i));
        connect(action, &QAction::triggered, this, [this, i] {
            if (picked_) picked_(i);
        });
        if (ticked_.contains(i) && !menu->activeAction()) menu->setActiveAction(action);
    }
    menu->popup(mapToGlobal(QPoint(0, height() + 2)));
}

void PopUpButton::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Down)
        click();
    else
        QAbstractButton::keyPressEvent(event);
}

void PopUpButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF place = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    QColor ground = theme_->otherSelection;
    if (underMouse()) ground = theme_->dark ? ground.lighter(125) : ground.darker(107);
    painter.setPen(QPen(theme_->border, 1));
    painter.setBrush(ground);
    painter.drawRoundedRect(place, kRadius, kRadius);
    painter.setPen(theme_->fieldText);
    painter.setFont(font());
    const QRectF text = place.adjusted(theme_->scaled(kInset), 0, -theme_->scaled(kArrow), 0);
    painter.drawText(text, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                     fontMetrics().elidedText(this->text(), Qt::ElideRight, int(text.width()) + 4));
    painter.setPen(QPen(theme_->info, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    const double arm = 4 * theme_->zoom;
    const QPointF tip(place.right() - 13 * theme_->zoom, place.center().y() + arm / 2);
    painter.setBrush(Qt::NoBrush);
    painter.drawPolyline(QPolygonF({tip - QPointF(arm, arm), tip, tip + QPointF(arm, -arm)}));
    if (hasFocus()) drawFocusRing(painter, place.adjusted(0.5, 0.5, -0.5, -0.5), kRadius, *theme_);
}
