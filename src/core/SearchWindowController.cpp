#include "core/SearchWindowController.h"

#include "core/SearchFieldController.h"
#include "core/WindowGeometry.h"
#include "platform/Frontmost.h"

SearchWindowController::SearchWindowController(WindowView& window, SearchFieldController& field,
                                               Frontmost* frontmost)
    : window_(window), field_(field), frontmost_(frontmost) {
    window_.setDelegate(this);
}

void SearchWindowController::showMainWindow() {
    if (!placed_) {
        placed_ = true;
        const Rect place =
            WindowGeometry::defaultFrame(window_.screenFrame(), WindowGeometry::kDefaultWidth,
                                         WindowGeometry::heightForRows(0, 0));
        window_.setFrame(WindowGeometry::onScreen(place, window_.visibleScreenFrame()), false);
    }
    window_.show();
    field_.focusOnSearchField();
    field_.updatePlaceholder();
}

void SearchWindowController::hideMainWindow() {
    if (!window_.isVisible()) return;
    window_.hide();
    if (frontmost_) frontmost_->activatePrevious();
}

void SearchWindowController::toggleMainWindow() {
    if (window_.isVisible() && window_.isActive()) {
        hideMainWindow();
        return;
    }
    if (!window_.isVisible() && frontmost_) frontmost_->save();
    showMainWindow();
}

void SearchWindowController::windowDidBecomeKey() {
    field_.focusOnSearchField();
}
