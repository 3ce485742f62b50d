#include "views/WindowButtons.h"

#include <QAbstractButton>
#include <QEvent>
#include <QPainter>
#include <QStyle>

#include "views/Theme.h"

namespace {

constexpr int kButton = 22, kEnd = 10, kIcon = 16;

void drawCross(QPainter& p) {
    p.drawLine(QPointF(4.2, 4.2), QPointF(11.8, 11.8));
    p.drawLine(QPointF(11.8, 4.2), QPointF(4.2, 11.8));
}

/// A pin, as it is stuck into a board: filled, and upright; else aslant.
void drawPin(QPainter& p, bool isStuck) {
    if (!isStuck) {
        p.translate(8, 8);
        p.rotate(45);
        p.translate(-8, -8);
    }
    if (isStuck) p.setBrush(p.pen().color());
    p.drawPolygon(
        QPolygonF({{5.6, 1.8}, {10.4, 1.8}, {9.8, 6.2}, {12.0, 9.4}, {4.0, 9.4}, {6.2, 6.2}}));
    p.drawLine(QPointF(8, 9.4), QPointF(8, 14.2));
}

}  // namespace

class WindowButtons::Button : public QAbstractButton {
  public:
    Button(WindowButtons* parent, bool isPin) : QAbstractButton(parent), isPin_(isPin) {
        setFocusPolicy(Qt::NoFocus);
        setAttribute(Qt::WA_Hover);
        setCursor(Qt::ArrowCursor);
    }
    void setText(const QString& text) {
        setToolTip(text);
        setAccessibleName(text);
        update();
    }
    const Theme* theme = nullptr;

  protected:
    void paintEvent(QPaintEvent*) override {
        if (!theme) return;
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.scale(theme->zoom, theme->zoom);
        if (underMouse() || isDown()) {
            QColor ground = theme->fieldText;
            ground.setAlphaF(isDown() ? 0.18F : 0.09F);
            painter.setPen(Qt::NoPen);
            painter.setBrush(ground);
            painter.drawRoundedRect(QRectF(0, 0, kButton, kButton), 6, 6);
            painter.setBrush(Qt::NoBrush);
        }
        const bool isStrong = underMouse() || isDown() || isChecked();
        painter.setPen(QPen(isChecked() ? theme->accent
                            : isStrong  ? theme->fieldText
                                        : theme->info,
                            1.4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        constexpr double kMargin = (kButton - kIcon) / 2.0;
        painter.translate(kMargin, kMargin);
        if (isPin_)
            drawPin(painter, isChecked());
        else
            drawCross(painter);
    }

  private:
    const bool isPin_;
};

WindowButtons::WindowButtons(QWidget* parent)
    : QWidget(parent), sticky_(new Button(this, true)), close_(new Button(this, false)) {
    sticky_->setCheckable(true);
    close_->setText(QStringLiteral("Close"));
    setSticky(false);
    QObject::connect(sticky_, &QAbstractButton::clicked, this, [this](bool checked) {
        sticky_->setChecked(!checked);  // until the program says so
        if (events_.sticky) events_.sticky();
    });
    QObject::connect(close_, &QAbstractButton::clicked, this, [this] {
        if (events_.close) events_.close();
    });
}

void WindowButtons::setTheme(const Theme* theme) {
    theme_ = theme;
    for (Button* const button : {sticky_, close_}) {
        button->theme = theme;
        button->update();
    }
    layOut();
}

void WindowButtons::setSticky(bool sticky) {
    sticky_->setChecked(sticky);
    sticky_->setText(sticky ? QStringLiteral("Stays open when another program is used")
                            : QStringLiteral("Closes when another program is used"));
}

void WindowButtons::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LayoutDirectionChange) layOut();
}

void WindowButtons::layOut() {
    const double zoom = theme_ ? theme_->zoom : 1;
    const int side = qRound(kButton * zoom), end = width() - qRound(kEnd * zoom);
    const int top = (height() - side) / 2;
    const auto place = [&](QWidget* button, int left) {
        button->setGeometry(
            QStyle::visualRect(layoutDirection(), rect(), QRect(left, top, side, side)));
    };
    place(close_, end - side);
    place(sticky_, end - 2 * side);
}
