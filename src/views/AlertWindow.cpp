#include "views/AlertWindow.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollArea>

#include "views/MarkedText.h"

namespace {

constexpr int kPadding = 24, kSymbol = 36, kSymbolGap = 18, kTextWidth = 380;
constexpr int kMostTextHeight = 320;

/// What kind of question it is, by a shape and a colour.
class AlertSymbol : public QWidget {
  public:
    AlertSymbol(Alert::Style style, const Theme* theme, QWidget* parent)
        : QWidget(parent), style_(style), theme_(theme) {
        setFixedSize(theme->scaled(kSymbol), theme->scaled(kSymbol));
    }

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.scale(double(width()) / kSymbol, double(height()) / kSymbol);
        const double middle = kSymbol / 2.0;
        const QColor colour = style_ == Alert::Style::informational ? theme_->selection
                              : style_ == Alert::Style::critical    ? QColor(200, 50, 48)
                                                                    : QColor(240, 170, 40);
        QColor sign = Qt::white;
        painter.setBrush(colour);
        if (style_ == Alert::Style::warning) {
            sign = QColor(60, 40, 0);
            painter.setPen(QPen(colour, 5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
            painter.drawPolygon(QPolygonF({{middle, 5}, {kSymbol - 4.0, 31}, {4, 31}}));
        } else {
            painter.setPen(Qt::NoPen);
            painter.drawEllipse(QRectF(1, 1, kSymbol - 2, kSymbol - 2));
        }
        painter.setPen(QPen(sign, 3.4, Qt::SolidLine, Qt::RoundCap));
        if (style_ == Alert::Style::informational) {
            painter.drawLine(QPointF(middle, 17), QPointF(middle, 26));
            painter.drawPoint(QPointF(middle, 10.5));
        } else {
            const double top = style_ == Alert::Style::warning ? 13 : 9.5;
            painter.drawLine(QPointF(middle, top), QPointF(middle, top + 9));
            painter.drawPoint(QPointF(middle, top + 15.5));
        }
    }

  private:
    const Alert::Style style_;
    const Theme* const theme_;
};

QWidget* scrolled(QLabel* text, int height, QWidget* parent) {
    auto* const area = new QScrollArea(parent);
    area->setFrameShape(QFrame::NoFrame);
    area->setWidget(text);
    area->setFixedSize(text->width() + 14, height);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->viewport()->setAutoFillBackground(false);
    text->setAutoFillBackground(false);
    return area;
}

}  // namespace

AlertWindow::AlertWindow(const WindowSystem& system, const Alert& alert,
                         std::function<void(size_t)> answered)
    : SheetWindow(system, kPadding),
      answered_(std::move(answered)),
      escape_(alert.buttonOfEscape.value_or(alert.buttons.empty() ? 0 : alert.buttons.size() - 1)),
      buttonOfSpace_(alert.buttonOfSpace) {
    setObjectName(QStringLiteral("alert"));
    setWindowModality(Qt::ApplicationModal);
    setAccessibleName(plainLines(alert.title));
    setAccessibleDescription(plainLines(alert.text));
    addTexts(alert);
    column().addSpacing(theme().scaled(22));
    addButtons(alert);
}

void AlertWindow::addTexts(const Alert& alert) {
    auto* const row = new QHBoxLayout;
    row->setSpacing(theme().scaled(kSymbolGap));
    row->addWidget(new AlertSymbol(alert.style, &theme(), this), 0, Qt::AlignTop);
    auto* const texts = new QVBoxLayout;
    texts->setSpacing(theme().scaled(8));
    const int width = theme().scaled(kTextWidth);
    if (!alert.title.empty()) {
        title_ = makeLabel(this, plainLines(alert.title), theme().textFont(16, QFont::DemiBold),
                           theme().fieldText, width);
        texts->addWidget(title_);
    }
    if (!alert.text.empty()) {
        text_ =
            makeLabel(this, plainLines(alert.text), theme().textFont(14), theme().fieldText, width);
        text_->setTextInteractionFlags(Qt::TextSelectableByMouse);
        const int most = theme().scaled(kMostTextHeight);
        texts->addWidget(text_->height() > most ? scrolled(text_, most, this) : text_);
    }
    if (alert.suppression) {
        texts->addSpacing(theme().scaled(6));
        suppression_ = new SheetCheckBox(plainText(*alert.suppression), &theme(), this);
        texts->addWidget(suppression_);
    }
    texts->addStretch();
    row->addLayout(texts);
    column().addLayout(row);
}

void AlertWindow::addButtons(const Alert& alert) {
    auto* const row = new QHBoxLayout;
    row->setSpacing(theme().scaled(8));
    row->addStretch();
    std::vector<std::string> titles = alert.buttons;
    if (titles.empty()) titles.emplace_back("OK");
    for (size_t i = 0; i < titles.size(); ++i) {
        const auto kind = i == 0 ? SheetButton::Kind::main : SheetButton::Kind::plain;
        auto* const button = new SheetButton(plainText(titles[i]), kind, &theme(), this);
        connect(button, &QAbstractButton::clicked, this, [this, i] { answered_(i); });
        // The first at the right end, where the eye ends up.
        row->insertWidget(1, button);
        if (buttonOfSpace_) button->installEventFilter(this);
        buttons_.push_back(button);
    }
    column().addLayout(row);
    buttons_[0]->setFocus();
}

bool AlertWindow::eventFilter(QObject* button, QEvent* event) {
    const bool isSpace =
        event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Space;
    if (!isSpace) return SheetWindow::eventFilter(button, event);
    answered_(*buttonOfSpace_);
    return true;
}

void AlertWindow::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        answered_(0);
    else
        SheetWindow::keyPressEvent(event);
}

void AlertWindow::themeChanged() {
    for (QLabel* label : {title_, text_})
        if (label) setLabelColour(*label, theme().fieldText);
}
