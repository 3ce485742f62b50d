#pragma once
#include <functional>

#include "screen/Alerts.h"
#include "views/Controls.h"
#include "views/SheetWindow.h"

/// The window of one question. Owner: AlertDialogs, while it runs. Threads: main.
class AlertWindow : public SheetWindow {
  public:
    /// answered is called once at least, with the number of the button.
    AlertWindow(const WindowSystem& system, const Alert& alert,
                std::function<void(size_t button)> answered);
    bool isSuppressed() const { return suppression_ && suppression_->isChecked(); }
    size_t buttonOfEscape() const { return escape_; }

  protected:
    void closeAsked() override { answered_(escape_); }
    bool eventFilter(QObject* button, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void themeChanged() override;

  private:
    void addTexts(const Alert& alert);
    void addButtons(const Alert& alert);

    const std::function<void(size_t)> answered_;
    const size_t escape_;
    const std::optional<size_t> buttonOfSpace_;
    QLabel *title_ = nullptr, *text_ = nullptr;
    SheetCheckBox* suppression_ = nullptr;
    std::vector<SheetButton*> buttons_;
};
