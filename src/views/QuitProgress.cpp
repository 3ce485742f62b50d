#include "views/QuitProgress.h"

#include <QPainter>
#include <algorithm>

#include "views/Controls.h"

namespace {
constexpr int kPadding = 22, kRing = 64, kFade = 200;  // the last in milliseconds
}

class QuitProgress::Ring : public QWidget {
  public:
    Ring(const Theme* theme, QWidget* parent) : QWidget(parent), theme_(theme) {
        setFixedSize(kRing, kRing);
    }
    void setProgress(double progress) {
        progress_ = std::clamp(progress, 0.0, 1.0);
        update();
    }

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const QRectF ring = QRectF(rect()).adjusted(4, 4, -4, -4);
        QColor track = theme_->accent;
        track.setAlphaF(0.2F);
        painter.setPen(QPen(track, 6));
        painter.drawEllipse(ring);
        if (progress_ <= 0) return;
        painter.setPen(QPen(theme_->accent, 6, Qt::SolidLine, Qt::RoundCap));
        painter.drawArc(ring, 90 * 16, -int(360 * 16 * progress_));
    }

  private:
    const Theme* const theme_;
    double progress_ = 0;
};

QuitProgress::QuitProgress(const WindowSystem& system)
    : window_(system, kPadding), ring_(new Ring(&window_.theme(), &window_)) {
    window_.setObjectName(QStringLiteral("quitProgress"));
    window_.setWindowFlag(Qt::WindowDoesNotAcceptFocus);
    window_.column().addWidget(ring_, 0, Qt::AlignHCenter);
    window_.column().addSpacing(14);
    window_.column().addWidget(makeLabel(&window_, QStringLiteral("Hold Ctrl+Q to quit"),
                                         window_.theme().info13, window_.theme().fieldText),
                               0, Qt::AlignHCenter);
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
    const double from = window_.windowOpacity();
    fading_.stop();
    fading_.setStartValue(from);
    fading_.setEndValue(to);
    fading_.start();
}

void QuitProgress::show() {
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
