#include "core/app/QuitByHold.h"

#include <algorithm>

#include "screen/QuitProgressView.h"
#include "util/World.h"

using namespace std::chrono_literals;

namespace {
constexpr uint64_t kDeviceIndependentModifiers = 0xFFFF0000;
}

QuitByHold::QuitByHold(KeyEvents& keys, QuitProgressView& view, std::function<void()> terminate)
    : keys_(keys), view_(view), terminate_(std::move(terminate)) {
    keys_.setMonitor([this](const KeyEvent& event) { return sendEvent(event); });
}

QuitByHold::~QuitByHold() {
    keys_.setMonitor({});
}

bool QuitByHold::sendEvent(const KeyEvent& event) {
    using Kind = KeyEvent::Kind;
    const uint64_t modifiers = event.modifierFlags & kDeviceIndependentModifiers;
    if (event.kind == Kind::down && event.keyCode == kKeyQ && modifiers == kModifierCommand) {
        if (isCmdQDown_) return true;  // auto-repeat
        isCmdQDown_ = true;
        initiateCustomQuitSequence();
        quitConfirmationTimer_.start(1s, [this] { confirmApplicationQuit(); });
        return true;
    }
    if (!isCmdQDown_ || event.kind == Kind::down) return false;
    const bool released = event.kind == Kind::up && event.keyCode == kKeyQ;
    if (released || !(modifiers & kModifierCommand)) {
        isCmdQDown_ = false;
        quitConfirmationTimer_.stop();
        cancelCustomQuitSequence();
    }
    return false;
}

void QuitByHold::initiateCustomQuitSequence() {
    view_.setProgress(0);
    view_.show();
    cmdQPressStartTime_ = World::current().clock().now();
    progressUpdateTimer_ = std::make_unique<RepeatingTimer>(10ms, [this] {
        const std::chrono::duration<double> held =
            World::current().clock().now() - cmdQPressStartTime_;
        view_.setProgress(std::clamp(held.count(), 0.0, 1.0));
    });
}

void QuitByHold::cancelCustomQuitSequence() {
    progressUpdateTimer_.reset();
    if (view_.isVisible()) view_.fadeOut();
}

void QuitByHold::confirmApplicationQuit() {
    if (!isCmdQDown_) return;
    isCmdQDown_ = false;
    finalizeCustomQuitSequenceAndTerminate();
}

void QuitByHold::finalizeCustomQuitSequenceAndTerminate() {
    progressUpdateTimer_.reset();
    view_.hide();
    terminate_();
}
