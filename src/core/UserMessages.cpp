#include "core/UserMessages.h"

#include "util/log.h"

using namespace std::chrono_literals;

void UserMessages::error(const std::string& text) {
    logWarning("Error shown: %s", text.c_str());
    MainQueue::async([this, text] {
        beep_();
        show(text, true, 2500ms);
    });
}

void UserMessages::info(const std::string& text) {
    MainQueue::async([this, text] { show(text, false, 1900ms); });
}

void UserMessages::setRestingText(const std::string& text, const std::string& toolTip) {
    restingText_ = text;
    restingToolTip_ = toolTip;
    if (timer_.isRunning()) return;
    bar_.setErrorLook(false);
    bar_.setText(restingText_);
    bar_.setToolTip(restingToolTip_);
}

void UserMessages::show(const std::string& text, bool isError, Clock::Duration duration) {
    bar_.setErrorLook(isError);
    bar_.setText(text);
    bar_.setToolTip(text);
    timer_.start(duration, [this] { setRestingText(restingText_, restingToolTip_); });
}
