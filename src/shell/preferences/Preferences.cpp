#include "shell/preferences/Preferences.h"

#include "core/FrontmostApplication.h"
#include "core/GlobalHotKey.h"
#include "core/HidingGuard.h"
#include "core/SearchWindowController.h"
#include "shell/registry/ownKeys.h"
#include "util/settings/OVUserDefaults.h"

Preferences::Preferences(const Parts& parts)
    : parts_(parts),
      forms_({.settings = OVUserDefaults::sharedInstance(),
              .hotKey = parts.hotKey,
              .ask = [this](const Alert& alert) { return ask(alert); },
              .searchAgain = parts.searchAgain,
              .restoreWindowPosition = [this] { parts_.window.restoreWindowPosition(); }}),
      shortcuts_(parts.shortcuts, parts.hotKey),
      rules_(OVUserDefaults::sharedInstance()) {
    const auto observe = [this](const std::string& key, void (Preferences::*show)()) {
        subscriptions_.push_back(OVUserDefaults::sharedInstance().addObserver(
            key, [this, show](auto&, auto&) { (this->*show)(); }));
    };
    for (const std::string& key : PreferencesForms::settings())
        observe(key, &Preferences::showChangedForms);
    for (const std::string& key : PreferencesRules::settings())
        observe(key, &Preferences::showRules);
    observe("keyboardShortcuts", &Preferences::showShortcuts);
    parts_.view.setDelegate(this);
    parts_.window.setClosedWithWindow([this] { close(); });
}

Preferences::~Preferences() {
    parts_.window.setClosedWithWindow({});
    parts_.view.setDelegate(nullptr);
}

// ---- The window

void Preferences::openPreferences() {
    if (isVisible()) {
        parts_.view.show();
        return;
    }
    comesFromSearchWindow_ = parts_.window.isMainWindowVisible();
    if (!comesFromSearchWindow_ && !parts_.application.isActive())
        parts_.frontmost.saveFrontmostApplicationInformation();
    parts_.window.closeWindowAndHideApplication(SearchWindowController::Hide::no);
    parts_.guard.preventHiding();
    holdsGuard_ = true;
    forms_.clearMessages();
    shortcuts_.setFilter({});
    parts_.view.showPane(pane_);
    parts_.view.show();
    showForms();
    showShortcuts();
    showRules();
}

void Preferences::close() {
    if (!holdsGuard_) return;
    parts_.view.hide();
    holdsGuard_ = false;
    parts_.guard.allowHiding();
}

void Preferences::preferencesClosed() {
    if (isAsking_) return;
    close();
    if (comesFromSearchWindow_)
        parts_.window.showMainWindow();
    else if (parts_.application.isActive())
        parts_.window.hideMainWindow();
}

bool Preferences::sendEvent(const KeyEvent& event) {
    const bool isKey = event.kind == KeyEvent::Kind::down &&
                       ownKeys::isOfPreferences(event.keyCode, event.modifierFlags);
    if (!isKey || parts_.view.isRecording()) return false;
    if (event.isRepeat) return true;
    if (isVisible())
        preferencesClosed();
    else if (!parts_.guard.isHidingPrevented())
        openPreferences();
    return true;
}

void Preferences::paneChosen(PreferencesPane pane) {
    pane_ = pane;
    forms_.clearMessages();
    showForms();
    parts_.view.showPane(pane);
}

size_t Preferences::ask(const Alert& alert) {
    size_t button = 0;
    isAsking_ = true;
    parts_.guard.performBlockPreventingHiding(
        [&] { button = parts_.alerts.runModal(alert).button; });
    isAsking_ = false;
    if (isVisible()) parts_.view.show();
    return button;
}

// ---- General and Search

std::array<PreferencesForm, 2> Preferences::forms() const {
    return {forms_.form(PreferencesPane::general), forms_.form(PreferencesPane::search)};
}

void Preferences::showForms() {
    if (!isVisible()) return;
    shownForms_ = forms();
    parts_.view.setForm(PreferencesPane::general, shownForms_[0]);
    parts_.view.setForm(PreferencesPane::search, shownForms_[1]);
}

void Preferences::showChangedForms() {
    if (isVisible() && forms() != shownForms_) showForms();
}

void Preferences::toggled(const std::string& id, bool isOn) {
    forms_.toggle(id, isOn);
    showForms();
}

void Preferences::numberEntered(const std::string& id, const std::string& text) {
    forms_.enterNumber(id, text);
    showForms();
}

void Preferences::choiceMade(const std::string& id, size_t choice) {
    forms_.choose(id, choice);
    showForms();
}

void Preferences::buttonPressed(const std::string& id) {
    forms_.press(id);
    showForms();
}

void Preferences::recordingChanged(bool isRecording) {
    if (isRecording)
        parts_.hotKey.pause();
    else
        parts_.hotKey.resume();
}

void Preferences::hotKeyRecorded(const KeyEvent& event) {
    forms_.recordHotKey(event);
    showForms();
}

void Preferences::hotKeyRemoved() {
    forms_.removeHotKey();
    showForms();
}

// ---- Keyboard

void Preferences::showShortcuts() {
    if (isVisible()) parts_.view.setShortcuts(shortcuts_.lines());
}

void Preferences::filterChanged(const std::string& text) {
    shortcuts_.setFilter(text);
    showShortcuts();
}

void Preferences::tell(const std::optional<ShortcutRefusal>& refusal) {
    showShortcuts();
    if (refusal)
        ask({.style = Alert::Style::critical,
             .title = refusal->title,
             .text = refusal->text,
             .buttons = {"OK"}});
}

void Preferences::shortcutRecorded(const std::string& identifier, const KeyEvent& event) {
    tell(shortcuts_.record(identifier, event));
}

void Preferences::shortcutRemoved(const std::string& identifier) {
    shortcuts_.remove(identifier);
    showShortcuts();
}

void Preferences::shortcutReset(const std::string& identifier) {
    tell(shortcuts_.reset(identifier));
}

void Preferences::shortcutShownInMenu(const std::string& identifier, bool isShown) {
    shortcuts_.showInMenu(identifier, isShown);
    showShortcuts();
}

void Preferences::allShortcutsReset() {
    const Alert alert{.title = "Reset all shortcuts",
                      .text =
                          "Do you want every command to have the shortcut again that it had at "
                          "first?",
                      .buttons = {"Reset", "Cancel"}};
    if (ask(alert) != 0) return;
    shortcuts_.resetAll();
    showShortcuts();
}

// ---- Global rules

void Preferences::showRules() {
    if (isVisible()) parts_.view.setRules(rules_.lists());
}

void Preferences::ruleAdded(size_t list) {
    rules_.add(list);
    showRules();
}

void Preferences::ruleRemoved(size_t list, size_t rule) {
    rules_.remove(list, rule);
    showRules();
}

void Preferences::patternEntered(size_t list, size_t rule, const std::string& text) {
    rules_.setPattern(list, rule, text);
    showRules();
}

void Preferences::patternTypeChosen(size_t list, size_t rule, size_t type) {
    rules_.setPatternType(list, rule, type);
    showRules();
}

void Preferences::fileTypeClicked(size_t list, size_t rule, uint8_t bit) {
    rules_.flipFileType(list, rule, bit);
    showRules();
}

void Preferences::rulesReset(size_t list) {
    const Alert alert{.title = "Reset rules",
                      .text = "Do you want this list to have the rules again that it had at first?",
                      .buttons = {"Reset", "Cancel"}};
    if (ask(alert) != 0) return;
    rules_.reset(list);
    showRules();
}
