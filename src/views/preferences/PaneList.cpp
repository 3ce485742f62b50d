#include "views/preferences/PaneList.h"

#include <QAbstractButton>
#include <QPainter>
#include <QVBoxLayout>

#include "views/Controls.h"
#include "views/Theme.h"

namespace {

constexpr int kWidth = 164, kHeight = 34, kInset = 12, kSymbol = 16, kGap = 10;
constexpr double kRadius = 7;

/// Of the pane, in a square of 16.
void drawSymbol(QPainter& painter, PreferencesPane pane) {
    switch (pane) {
        case PreferencesPane::general:
            for (const auto& [y, x] : {std::pair(4.0, 10.5), std::pair(11.5, 5.0)}) {
                painter.drawLine(QPointF(1, y), QPointF(15, y));
                painter.drawEllipse(QPointF(x, y), 2.3, 2.3);
            }
            break;
        case PreferencesPane::search:
            painter.drawEllipse(QPointF(6.8, 6.8), 4.9, 4.9);
            painter.drawLine(QPointF(10.6, 10.6), QPointF(14.6, 14.6));
            break;
        case PreferencesPane::keyboard:
            painter.drawRoundedRect(QRectF(1, 3, 14, 10), 2, 2);
            for (const double x : {4.2, 8.0, 11.8})
                painter.drawLine(QPointF(x - 0.4, 6.3), QPointF(x + 0.4, 6.3));
            painter.drawLine(QPointF(5, 9.8), QPointF(11, 9.8));
            break;
        case PreferencesPane::globalRules:
            painter.drawPolygon(QPolygonF(
                {{1.5, 2.5}, {14.5, 2.5}, {9.6, 8.4}, {9.6, 13.6}, {6.4, 11.8}, {6.4, 8.4}}));
            break;
    }
}

}  // namespace

class PaneList::Entry : public QAbstractButton {
  public:
    Entry(PreferencesPane pane, const Theme* theme, QWidget* parent)
        : QAbstractButton(parent), pane_(pane), theme_(theme) {
        setText(nameOf(pane));
        setCheckable(true);
        setFixedSize(theme->scaled(kWidth), theme->scaled(kHeight));
        setFocusPolicy(Qt::StrongFocus);
        setAttribute(Qt::WA_Hover);
    }

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const QRectF place = QRectF(rect()).adjusted(1, 1, -1, -1);
        if (isChecked() || underMouse()) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(isChecked() ? theme_->selection : theme_->otherSelection);
            painter.drawRoundedRect(place, kRadius, kRadius);
        }
        const QColor colour = isChecked() ? theme_->selectedText : theme_->fieldText;
        painter.setPen(QPen(colour, 1.4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.setBrush(isChecked() ? theme_->selection : QColor(Qt::transparent));
        const double zoom = theme_->zoom;
        painter.translate(kInset * zoom, (height() - kSymbol * zoom) / 2);
        painter.scale(zoom, zoom);
        drawSymbol(painter, pane_);
        painter.resetTransform();
        painter.setFont(theme_->info13);
        painter.drawText(place.adjusted(theme_->scaled(kInset + kSymbol + kGap), 0, -4, 0),
                         Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, text());
        if (hasFocus()) drawFocusRing(painter, place.adjusted(1, 1, -1, -1), kRadius, *theme_);
    }

  private:
    const PreferencesPane pane_;
    const Theme* const theme_;
};

QString PaneList::nameOf(PreferencesPane pane) {
    constexpr const char* kNames[] = {"General", "Search", "Keyboard", "Global Rules"};
    return QString::fromUtf8(kNames[size_t(pane)]);
}

PaneList::PaneList(const Theme* theme, QWidget* parent)
    : QWidget(parent), group_(new QButtonGroup(this)) {
    setAccessibleName(QStringLiteral("Panes"));
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->setSpacing(theme->scaled(2));
    for (size_t i = 0; i < kPreferencesPanes; ++i) {
        auto* const entry = new Entry(PreferencesPane(i), theme, this);
        group_->addButton(entry, int(i));
        column->addWidget(entry);
    }
    column->addStretch();
    connect(group_, &QButtonGroup::idToggled, this, [this](int id, bool isOn) {
        if (isOn && chosen_) chosen_(PreferencesPane(id));
    });
}

void PaneList::setPane(PreferencesPane pane) {
    const QSignalBlocker quiet(group_);
    group_->button(int(pane))->setChecked(true);
}
