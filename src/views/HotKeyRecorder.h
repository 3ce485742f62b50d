#pragma once
#include <QWidget>
#include <functional>

#include "screen/KeyEvent.h"
#include "screen/keyCodes.h"

struct Theme;

/// Shows a hot key, and takes down another one: a click or Return, then the keys.
/// Owner:   the window that it stands in. Threads: main. The theme outlives it.
/// Fails:   Escape alone, or the loss of the keyboard, ends the recording without a key.
class HotKeyRecorder : public QWidget {
  public:
    HotKeyRecorder(KeySymbols keySymbols, const Theme* theme, QWidget* parent);
    void setRecorded(std::function<void(const KeyEvent&)> recorded);
    /// Called when it begins and when it ends to take keys, before recorded.
    void setRecordingChanged(std::function<void(bool isRecording)> changed);
    /// Empty: none yet.
    void setHotKey(const QString& text);
    /// Takes the focus, and the next keys are the hot key.
    void record();
    bool isRecording() const { return isRecording_; }

  protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void hideEvent(QHideEvent*) override { setRecording(false); }
    void enterEvent(QEnterEvent*) override { update(); }
    void leaveEvent(QEvent*) override { update(); }

  private:
    bool takeKey(const QKeyEvent& event);
    void setRecording(bool recording);

    const KeySymbols keySymbols_;
    const Theme* const theme_;
    std::function<void(const KeyEvent&)> recorded_;
    std::function<void(bool)> recordingChanged_;
    QString hotKey_;
    bool isRecording_ = false;
    uint64_t modifiers_ = 0;  // that are down while it records
};
