#include "views/IndicatorRow.h"

#include <QAbstractButton>
#include <QFontMetrics>
#include <QPainter>
#include <QStyle>

#include "views/IndicatorIcons.h"
#include "views/MarkedText.h"
#include "views/Theme.h"

namespace {
constexpr int kButton = 17, kIcon = 15;
constexpr int kTextRoom = 9, kAfterText = 6;
constexpr const char* kEnableText = "Index Metadata";
}  // namespace

class IndicatorRow::Button : public QAbstractButton {
  public:
    Button(IndicatorRow* parent, IndicatorButton kind) : QAbstractButton(parent), kind_(kind) {
        setFocusPolicy(Qt::NoFocus);
        setAttribute(Qt::WA_Hover);
        setCursor(Qt::ArrowCursor);
        setAccessibleName(hasText() ? QString::fromUtf8(kEnableText)
                                    : QStringLiteral("Limits of the result"));
        hide();
        QObject::connect(this, &QAbstractButton::clicked, this, [this, parent, kind] {
            setChecked(content_.isOn);  // until the program says otherwise
            if (parent->delegate_) parent->delegate_->indicatorClicked(kind);
        });
    }

    bool setContent(const IndicatorContent& content) {
        if (content == content_) return false;
        content_ = content;
        setToolTip(plainToolTip(content.toolTip));
        const QString told = plainText(content.toolTip, false);
        setAccessibleName(hasText() ? QString::fromUtf8(kEnableText) : told);
        setAccessibleDescription(told);
        setCheckable(!hasText() && kind_ != IndicatorButton::resetFilterButton);
        setChecked(content.isOn);
        setVisible(content.isShown);
        update();
        return true;
    }
    bool isShown() const { return content_.isShown; }
    int neededWidth() const {
        if (!hasText() || !theme_) return kButton;
        return QFontMetrics(theme_->info13).horizontalAdvance(QString::fromUtf8(kEnableText)) +
               2 * kTextRoom + kAfterText;
    }

    const Theme* theme_ = nullptr;

  protected:
    void paintEvent(QPaintEvent*) override {
        if (!theme_) return;
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.scale(theme_->zoom, theme_->zoom);
        const QRectF all(0, 0, width() / theme_->zoom, height() / theme_->zoom);
        const QColor colour = colourNow();
        if (hasText()) {
            const QRectF pill = all.adjusted(0.5, 1.5, -kAfterText - 0.5, -3.5);
            QColor ground = theme_->accent;
            ground.setAlphaF(isDown() ? 0.35F : underMouse() ? 0.25F : 0.14F);
            painter.setPen(Qt::NoPen);
            painter.setBrush(ground);
            painter.drawRoundedRect(pill, pill.height() / 2, pill.height() / 2);
            painter.setPen(colour);
            QFont font = theme_->info13;
            font.setPixelSize(12);
            painter.setFont(font);
            painter.drawText(pill, Qt::AlignCenter, QString::fromUtf8(kEnableText));
            return;
        }
        const QRectF square((all.width() - kIcon) / 2, (all.height() - kIcon) / 2 - 1, kIcon,
                            kIcon);
        IndicatorIcons::draw(painter, square, kind_, content_.isOn, colour);
    }

  private:
    bool hasText() const { return kind_ == IndicatorButton::enableMetadata; }
    QColor colourNow() const {
        const bool limits = kind_ == IndicatorButton::resetFilterButton || hasText();
        if (limits) return theme_->accent;
        return underMouse() || isDown() ? theme_->fieldText : theme_->info;
    }

    const IndicatorButton kind_;
    IndicatorContent content_;
};

IndicatorRow::IndicatorRow(QWidget* parent, std::function<void()> widthChanged)
    : QWidget(parent), widthChanged_(std::move(widthChanged)) {
    for (size_t i = 0; i < buttons_.size(); ++i)
        buttons_[i] = new Button(this, static_cast<IndicatorButton>(i));
}

void IndicatorRow::setTheme(const Theme* theme) {
    for (Button* button : buttons_) {
        button->theme_ = theme;
        button->update();
    }
    widthChanged_();
}

int IndicatorRow::neededWidth() const {
    int width = 0;
    for (const Button* button : buttons_) width += button->isShown() ? button->neededWidth() : 0;
    return width;
}

std::vector<QWidget*> IndicatorRow::buttons() const {
    std::vector<QWidget*> shown;
    for (Button* button : buttons_)
        if (button->isShown()) shown.push_back(button);
    return shown;
}

void IndicatorRow::setIndicator(IndicatorButton button, const IndicatorContent& content) {
    if (!buttons_[size_t(button)]->setContent(content)) return;
    layOut();
    widthChanged_();
}

void IndicatorRow::layOut() {
    double x = 0;
    for (Button* button : buttons_) {
        if (!button->isShown()) continue;
        const double zoom = button->theme_ ? button->theme_->zoom : 1;
        const QRect place =
            QRectF(x * zoom, 0, button->neededWidth() * zoom, height()).toAlignedRect();
        button->setGeometry(QStyle::visualRect(layoutDirection(), rect(), place));
        x += button->neededWidth();
    }
}
