#include "views/HotKeyRecorder.h"

#include <QKeyEvent>
#include <QPainter>
#include <utility>

#include "views/Controls.h"
#include "views/KeyTranslation.h"
#include "views/Theme.h"

namespace {

constexpr int kHeight = 46, kInset = 16;
constexpr double kRadius = 8;

}  // namespace

HotKeyRecorder::HotKeyRecorder(KeySymbols keySymbols, const Theme* theme, QWidget* parent)
    : QWidget(parent), keySymbols_(std::move(keySymbols)), theme_(theme) {
    setFixedHeight(theme->scaled(kHeight));
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    setCursor(Qt::PointingHandCursor);
    setAccessibleName(QStringLiteral("Hot key"));
}

void HotKeyRecorder::setRecorded(std::function<void(const KeyEvent&)> recorded) {
    recorded_ = std::move(recorded);
}

void HotKeyRecorder::setRecordingChanged(std::function<void(bool)> changed) {
    recordingChanged_ = std::move(changed);
}

void HotKeyRecorder::setHotKey(const QString& text) {
    hotKey_ = text;
    setAccessibleDescription(text);
    update();
}

void HotKeyRecorder::record() {
    setFocus();
    setRecording(true);
}

void HotKeyRecorder::setRecording(bool recording) {
    const bool changes = std::exchange(isRecording_, recording) != recording;
    modifiers_ = 0;
    update();
    if (changes && recordingChanged_) recordingChanged_(recording);
}

bool HotKeyRecorder::takeKey(const QKeyEvent& event) {
    const KeyEvent key = keyEventFrom(event, keySymbols_);
    if (!isRecording_) {
        const bool starts = key.kind == KeyEvent::Kind::down && key.modifierFlags == 0 &&
                            (key.keyCode == kKeyReturn || key.keyCode == kKeySpace);
        if (starts) setRecording(true);
        return starts;
    }
    if (key.kind == KeyEvent::Kind::flagsChanged) {
        modifiers_ = key.modifierFlags;
        update();
        return true;
    }
    if (key.kind != KeyEvent::Kind::down || key.isRepeat) return true;
    setRecording(false);
    const bool isCancelled = key.keyCode == kKeyEscape && key.modifierFlags == 0;
    if (!isCancelled && key.keyCode != kNoKeyCode && recorded_) recorded_(key);
    return true;
}

bool HotKeyRecorder::event(QEvent* event) {
    // Before Qt moves the focus for Tab.
    const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease;
    if (isKey && takeKey(*static_cast<QKeyEvent*>(event))) {
        event->accept();
        return true;
    }
    return QWidget::event(event);
}

void HotKeyRecorder::mousePressEvent(QMouseEvent* event) {
    event->accept();
    setFocus(Qt::MouseFocusReason);
    setRecording(!isRecording_);
}

void HotKeyRecorder::focusOutEvent(QFocusEvent* event) {
    setRecording(false);
    QWidget::focusOutEvent(event);
}

void HotKeyRecorder::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF place = QRectF(rect()).adjusted(1.5, 1.5, -1.5, -1.5);
    QColor ground = theme_->otherSelection;
    if (underMouse() && !isRecording_)
        ground = theme_->dark ? ground.lighter(115) : ground.darker(103);
    painter.setPen(QPen(theme_->border, 1));
    painter.setBrush(ground);
    painter.drawRoundedRect(place, kRadius, kRadius);
    const QRectF inner = place.adjusted(theme_->scaled(kInset), 0, -theme_->scaled(kInset), 0);
    painter.setFont(theme_->nameFont);
    const QString pressed = QString::fromStdString(modifiersText(modifiers_));
    QString text = hotKey_;
    if (isRecording_)
        text = pressed.isEmpty() ? QStringLiteral("Press the keys") : pressed;
    else if (hotKey_.isEmpty())
        text = QStringLiteral("None yet");
    const bool isQuiet = isRecording_ ? pressed.isEmpty() : hotKey_.isEmpty();
    painter.setPen(isQuiet ? theme_->placeholder : theme_->fieldText);
    painter.drawText(inner, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, text);
    painter.setFont(theme_->info13);
    painter.setPen(theme_->info);
    painter.drawText(
        inner, Qt::AlignRight | Qt::AlignVCenter | Qt::TextSingleLine,
        isRecording_ ? QStringLiteral("Esc keeps what it was") : QStringLiteral("Click to change"));
    if (hasFocus() || isRecording_) drawFocusRing(painter, place, kRadius, *theme_);
}
