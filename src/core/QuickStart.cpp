#include "core/QuickStart.h"

#include "core/GlobalHotKey.h"
#include "core/QuickStartExamples.h"
#include "shell/registry/shortcutText.h"
#include "util/Unicode.h"

namespace {

/// Free on the desktops that were looked at, and close to where the hands are.
constexpr HotKey kSuggested{.keyCode = kKeySpace,
                            .modifierFlags = kModifierCommand | kModifierControl};

}  // namespace

QuickStart::QuickStart(Parts parts) : parts_(std::move(parts)) {
    parts_.view.setDelegate(this);
}

QuickStart::~QuickStart() {
    parts_.view.setDelegate(nullptr);
}

void QuickStart::openQuickStart() {
    if (const auto cache = parts_.currentCache()) content_.tries = quickStartExamples(*cache);
    tell({});
    showHotKey();
    if (content_.hotKey.empty()) offerHotKey();
    parts_.view.setContent(content_);
    parts_.view.show();
}

void QuickStart::indexChanged() {
    if (!parts_.view.isVisible() || content_.tries.size() == 3) return;
    if (const auto cache = parts_.currentCache()) content_.tries = quickStartExamples(*cache);
    parts_.view.setContent(content_);
}

void QuickStart::offerHotKey() {
    const std::string keys = shortcutText(kSuggested.keyCode, kSuggested.modifierFlags);
    const auto free = parts_.hotKey.isFree(kSuggested);
    tell(free ? "Press the keys that shall bring the window up: " + keys + " is free."
              : "Press the keys that shall bring the window up. " + free.error().description);
}

void QuickStart::tell(std::string message, bool isError) {
    content_.hotKeyMessage = std::move(message);
    content_.isHotKeyMessageAnError = isError;
}

void QuickStart::showHotKey() {
    const HotKey& hotKey = parts_.hotKey.currentShortcut();
    content_.hotKey = shortcutText(hotKey.keyCode, hotKey.modifierFlags);
    if (!hotKey.isNone()) tell("Press it now: it shows and hides the search window.");
}

void QuickStart::hotKeyRecorded(const KeyEvent& event) {
    const auto recorded = parts_.hotKey.record(event);
    showHotKey();
    if (!recorded) tell(recorded.error().description, true);
    parts_.view.setContent(content_);
}

void QuickStart::hotKeyRecording(bool isRecording) {
    if (isRecording)
        parts_.hotKey.pause();
    else
        parts_.hotKey.resume();
}

void QuickStart::quickStartClosed() {
    parts_.view.hide();
    parts_.showMainWindow();
}

void QuickStart::tryChosen(size_t index) {
    if (index >= content_.tries.size()) return;
    if (const auto query = toUtf16(content_.tries[index].query)) parts_.search(*query);
}
