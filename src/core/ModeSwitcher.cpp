#include "core/ModeSwitcher.h"

#include "core/SearchFieldController.h"
#include "core/state/GlobalState.h"
#include "modes/framework/ModeHost.h"
#include "modes/framework/TRVModeWithParentMode.h"
#include "platform/OwnApplication.h"
#include "util/log.h"
#include "util/queues/MainQueue.h"

namespace {

// Room for buttons at the right end of the info bar.
constexpr double kInsetOfListings = 63, kInsetOfBrowser = 34;

double insetFor(ModeIdentifier identifier) {
    if (identifier & kListingModes) return kInsetOfListings;
    return identifier & kFileModes ? kInsetOfBrowser : 0;
}

}  // namespace

void ModeSwitcher::addMode(TRVMode& mode) {
    mode.setHost(&parts_.host);
    modes_.push_back(&mode);
}

TRVMode* ModeSwitcher::modeWithIdentifier(ModeIdentifier identifier) const {
    for (TRVMode* mode : modes_)
        if (mode->identifier() == identifier) return mode;
    return nullptr;
}

void ModeSwitcher::activateMode(TRVMode& mode) {
    if (MainQueue::isMainThread()) logError("Must not be called on main thread!");
    MainQueue::sync([this, &mode] { switchOnMainThread(mode); });
}

void ModeSwitcher::switchToMode(TRVMode& mode) {
    TRVMode::switchModeQueue().async([this, &mode] {
        activateMode(mode);
        parts_.host.reloadInBackgroundAnimated(false);
    });
}

void ModeSwitcher::switchOnMainThread(TRVMode& mode) {
    if (mode.isActive()) {
        parts_.host.updateTextsOfCurrentMode();
        return;
    }
    const SearchFieldController::CursorUpdatePause pause(parts_.field);
    parts_.field.hideMarqueeInfoField();
    GlobalState& state = GlobalState::sharedInstance();
    if (TRVMode* old = state.currentMode()) leave(*old, mode);
    state.setCurrentMode(&mode);
    parts_.table.setAllowsEmptySelection(mode.allowsEmptySelection());
    mode.activate();
    modifierFlags_ = parts_.application.modifierFlags();
    showText(mode);
    parts_.table.setAllowsMultipleSelection((mode.identifier() & kFileModes) != 0);
    parts_.infoBar.setInset(insetFor(mode.identifier()));
    showLook(mode);
    parts_.host.updateTextsOfCurrentMode();
}

void ModeSwitcher::leave(TRVMode& mode, const TRVMode& forMode) {
    mode.resignKeepingSubMode((forMode.identifier() & kSubModes) != 0);
    if (forMode.identifier() == kMarkedItemsMode) return;
    const auto* child = dynamic_cast<const TRVModeWithParentMode*>(&mode);
    if (child && child->parentMode()) child->parentMode()->restorePrimarySubMode();
}

void ModeSwitcher::begin(TRVMode& mode) {
    GlobalState::sharedInstance().setCurrentMode(&mode);
    parts_.table.setAllowsEmptySelection(mode.allowsEmptySelection());
    parts_.table.setAllowsMultipleSelection((mode.identifier() & kFileModes) != 0);
    parts_.infoBar.setInset(insetFor(mode.identifier()));
    parts_.field.updateSearchFieldWithEmptySearchString();
    showLook(mode);
    parts_.host.updateTextsOfCurrentMode();
}

void ModeSwitcher::showText(TRVMode& mode) {
    if (!mode.hasSearchString()) {
        parts_.field.updateSearchFieldWithEmptySearchString();
        return;
    }
    parts_.field.updateSearchFieldWithSearchString(mode.searchString());
    parts_.field.selectText();  // so that the next key replaces it
}

void ModeSwitcher::showLook(TRVMode& mode) {
    mode.themeChanged();
    mode.setupTextAttrsForColor(mode.backgroundColor());
    parts_.window.setLook(mode.look());
}

void ModeSwitcher::themeChanged() {
    TRVMode* mode = GlobalState::sharedInstance().currentMode();
    if (!mode) return;
    showLook(*mode);
    parts_.host.reloadInBackgroundAnimated(false);
}
