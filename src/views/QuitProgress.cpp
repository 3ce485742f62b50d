#include "views/QuitProgress.h"

#include <QPainter>
#include <algorithm>

#include "views/Controls.h"

namespace {
constexpr int kPadding = 22, kRing = 64, kFade = 200;  // the last in milliseconds
}

class QuitProgress::Ring : public QWidget {
  public:
    Ring(const Theme* theme, QWidget* parent) : QWidget(parent), theme_(theme) { fit(); }
    void fit() { setFixedSize(theme_->scaled(kRing), theme_->scaled(kRing)); }
    void setProgress(double progress) {
        progress_ = std::clamp(progress, 0.0, 1.0);
        update();
    }

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const double line = 6 * theme_->zoom;
        const double inset = line * 2 / 3;
        const QRectF ring = QRectF(rect()).adjusted(inset, inset, -inset, -inset);
        QColor track = theme_->accent;
        track.setAlphaF(0.2F);
        painter.setPen(QPen(track, line));
        painter.drawEllipse(ring);
        if (progress_ <= 0) return;
        painter.setPen(QPen(theme_->accent, line, Qt::SolidLine, Qt::RoundCap));
        painter.drawArc(ring, 90 * 16, -int(360 * 16 * progress_));
    }

  private:
    const Theme* const theme_;
    double progress_ = 0;
};

QuitProgress::QuitProgress(const WindowSystem& system)
    : window_(system, kPadding),
      ring_(new Ring(&window_.theme(), &window_)),
      text_(makeLabel(&window_, QStringLiteral("Hold Ctrl+Q to quit"), window_.theme().info13,
                      window_.theme().fieldText)) {
    window_.setObjectName(QStringLiteral("quitProgress"));
    window_.setWindowFlag(Qt::WindowDoesNotAcceptFocus);
    window_.column().addWidget(ring_, 0, Qt::AlignHCenter);
    window_.column().addSpacing(window_.theme().scaled(14));
    window_.column().addWidget(text_, 0, Qt::AlignHCenter);
    fading_.setDuration(kFade);
    QObject::connect(
        &fading_, &QVariantAnimation::valueChanged, &window_,
        [this](const QVariant& opacity) { window_.setWindowOpacity(opacity.toDouble()); });
    QObject::connect(&fading_, &QVariantAnimation::finished, &window_, [this] {
        if (isFadingOut_) hide();
    });
}

QuitProgress::~QuitProgress() = default;

void QuitProgress::fade(double to) {
    isFadingOut_ = to == 0;
    fading_.stop();
    if (window_.theme().lessMotion) {
        window_.setWindowOpacity(to);
        if (isFadingOut_) hide();
        return;
    }
    const double from = window_.windowOpacity();
    fading_.setStartValue(from);
    fading_.setEndValue(to);
    fading_.start();
}

void QuitProgress::show() {
    // The theme may be another one than the last time.
    ring_->fit();
    text_->setFont(window_.theme().info13);
    setLabelColour(*text_, window_.theme().fieldText);
    setProgress(0);
    window_.setWindowOpacity(0);
    window_.showCentred(SheetWindow::Keyboard::left);
    fade(1);
}

void QuitProgress::setProgress(double progress) {
    ring_->setProgress(progress);
}

void QuitProgress::fadeOut() {
    if (window_.isVisible()) fade(0);
}

void QuitProgress::hide() {
    fading_.stop();
    isFadingOut_ = false;
    window_.hide();
}

bool QuitProgress::isVisible() const {
    return window_.isVisible() && !isFadingOut_;
}

QWidget* QuitProgress::widget() {
    return &window_;
}
