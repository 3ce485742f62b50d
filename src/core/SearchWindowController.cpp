#include "core/SearchWindowController.h"

#include "core/FrontmostApplication.h"
#include "core/HidingGuard.h"
#include "core/PreviewController.h"
#include "core/SearchFieldController.h"
#include "core/state/GlobalState.h"
#include "platform/Updater.h"
#include "util/World.h"
#include "util/settings/OVUserDefaults.h"

namespace {

bool hidesOnDeFocus() {
    return OVUserDefaults::sharedInstance().boolForKey("hideSearchFieldOnDeFocus");
}

}  // namespace

SearchWindowController::SearchWindowController(const Parts& parts)
    : parts_(parts), place_(parts.window) {
    parts_.window.setDelegate(this);
    parts_.application.setDelegate(this);
}

SearchWindowController::~SearchWindowController() {
    parts_.window.setDelegate(nullptr);
    parts_.application.setDelegate(nullptr);
}

void SearchWindowController::toggleMainWindow() {
    const bool visible = parts_.window.isVisible(), active = parts_.application.isActive();
    if (visible && active) {
        hideMainWindow();
        return;
    }
    if (!visible && !active) parts_.frontmost.saveFrontmostApplicationInformation();
    showMainWindow();
}

void SearchWindowController::showMainWindow() {
    if (parts_.updater.sessionInProgress()) {
        parts_.application.activateIgnoringOtherApps();
        return;
    }
    if (closedWithWindow_) closedWithWindow_();
    auto& settings = OVUserDefaults::sharedInstance();
    settings.setInteger(settings.integerForKey("numberOfInvocations") + 1, "numberOfInvocations");
    const bool wasVisible = parts_.window.isVisible();
    updateStickyButtonImage();
    parts_.window.show();
    parts_.application.activateIgnoringOtherApps();
    parts_.field.focusOnSearchField();
    parts_.field.updatePlaceholder();
    if (!wasVisible) visibilityChanged_.emit(true);
    if (TRVMode* mode = GlobalState::sharedInstance().currentMode()) mode->searchWindowDidOpen();
}

void SearchWindowController::closeWindowAndHideApplication(Hide hide) {
    closeWindowAndHideApplication(hide, parts_.frontmost.frontmostApplicationBundleId());
}

void SearchWindowController::closeWindowAndHideApplication(
    Hide hide, const std::optional<std::string>& frontmostApplicationBundleId) {
    if (parts_.guard.authorizationInProgress()) return;
    if (closedWithWindow_) closedWithWindow_();
    parts_.preview.close();
    const bool wasVisible = parts_.window.isVisible();
    parts_.window.hide();
    if (wasVisible) visibilityChanged_.emit(false);
    if (hide == Hide::no) return;
    parts_.application.hide();
    if (frontmostApplicationBundleId && hidesOnDeFocus())
        parts_.frontmost.activateRunningApplicationWithBundleIdentifier(
            *frontmostApplicationBundleId);
}

void SearchWindowController::setUpResizing() {
    auto& settings = OVUserDefaults::sharedInstance();
    const bool resizable = settings.boolForKey("resizableSearchWindow");
    parts_.window.setResizable(resizable);
    if (!resizable) settings.removeObjectForKey("searchPanelWidth");
    place_.restoreWindowPosition();
}

void SearchWindowController::windowDidBecomeKey() {
    parts_.field.focusOnSearchField();
    updateStickyButtonImage();
    becameFirstResponder_ = World::current().clock().time();
}

void SearchWindowController::windowDidMove() {
    if (parts_.window.isVisible()) place_.persistWindowPosition();
}

void SearchWindowController::windowDidResize() {
    if (parts_.window.isVisible()) place_.persistWindowPosition();
}

void SearchWindowController::windowWillClose() {
    closeWindowAndHideApplication(Hide::yes, std::nullopt);
}

void SearchWindowController::stickyButtonClicked() {
    OVUserDefaults::sharedInstance().setBool(!hidesOnDeFocus(), "hideSearchFieldOnDeFocus");
    updateStickyButtonImage();
}

void SearchWindowController::updateStickyButtonImage() {
    parts_.window.setSticky(!hidesOnDeFocus());
}

void SearchWindowController::applicationWillResignActive() {
    keyboardLost_.emit();
    if (hidesOnDeFocus() && parts_.window.isVisible()) closeWindowAndHideApplication(Hide::no);
}

void SearchWindowController::applicationDidHide() {
    if (!parts_.guard.isHidingPrevented()) return;
    const bool wasVisible = parts_.window.isVisible();
    parts_.window.show();
    if (!wasVisible) visibilityChanged_.emit(true);
    parts_.field.focusOnSearchField();
    parts_.application.unhide();
}

void SearchWindowController::applicationDidChangeScreenParameters() {
    place_.restoreWindowPosition();
}
