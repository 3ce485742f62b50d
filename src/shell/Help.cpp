#include "shell/Help.h"

#include <optional>
#include <utility>

#include "core/HidingGuard.h"
#include "core/SearchWindowController.h"
#include "modes/framework/ModeHost.h"
#include "modes/framework/TRVModeRepresentingFiles.h"
#include "platform/OwnApplication.h"
#include "shell/HelpContent.h"
#include "util/Unicode.h"

using namespace std::chrono_literals;

namespace {

constexpr auto kHolding = 1s;

std::string nameOfMode(uint64_t mode) {
    constexpr const char* kNames[] = {"Search",   "Browser", "Recent Items",  "Marked Items",
                                      "Projects", "Actions", "Data Provider", "History"};
    return kNames[static_cast<size_t>(__builtin_ctzll(mode | 128))];
}

std::string describe(const std::vector<FileURL>& items) {
    if (items.size() == 1) return displayText(items.front().lastPathComponent());
    return std::to_string(items.size()) + " items";
}

std::optional<HelpView::Scroll> scrollOf(uint64_t keyCode) {
    using Scroll = HelpView::Scroll;
    switch (keyCode) {
        case kKeyUp:
            return Scroll::lineUp;
        case kKeyDown:
            return Scroll::lineDown;
        case kKeyPageUp:
            return Scroll::pageUp;
        case kKeyPageDown:
            return Scroll::pageDown;
        case kKeyHome:
            return Scroll::top;
        case kKeyEnd:
            return Scroll::bottom;
        default:
            return std::nullopt;
    }
}

}  // namespace

Help::Help(const Parts& parts) : parts_(parts) {
    parts_.view.setDelegate(this);
}

Help::~Help() {
    parts_.view.setDelegate(nullptr);
}

void Help::toggle() {
    const bool wasSheet = parts_.view.shown() == HelpView::Kind::sheet;
    endHolding();
    const TRVMode* const mode = parts_.host.currentMode();
    if (wasSheet || !mode) {
        parts_.view.hide();
        return;
    }
    groups_ = helpContent::allKeys({parts_.shortcuts, mode->identifier()});
    title_ = "Keys in " + nameOfMode(mode->identifier());
    parts_.view.show(HelpView::Kind::sheet, sheetContent({}));
}

HelpContent Help::sheetContent(const std::string& filter) const {
    return {.title = title_,
            .groups = helpContent::filtered(groups_, filter),
            .whenEmpty = "No key for “" + displayText(filter) + "”"};
}

void Help::helpFilterDidChange(const std::string& filter) {
    if (parts_.view.shown() == HelpView::Kind::sheet) parts_.view.setContent(sheetContent(filter));
}

bool Help::sendEvent(const KeyEvent& event) {
    if (parts_.view.shown() == HelpView::Kind::sheet) {
        heldModifiers_ = event.modifierFlags & kHeldModifiers;
        return event.kind == KeyEvent::Kind::down && handleKeyOfSheet(event);
    }
    watchHolding(event);
    return false;
}

bool Help::handleKeyOfSheet(const KeyEvent& event) {
    const auto isKeyOf = [&](const char* identifier) {
        const auto definition = parts_.shortcuts.keyboardShortcutDefinitionFor(identifier);
        return definition && definition->matchesKeysOf(event) ? definition : nullptr;
    };
    const bool isEscape = event.keyCode == kKeyEscape && !(event.modifierFlags & kHeldModifiers);
    if (isEscape || isKeyOf("ShowHelp")) {
        if (!event.isRepeat) parts_.view.hide();
        return true;
    }
    if (const auto close = isKeyOf("CloseSearchWindow")) {
        if (!event.isRepeat) close->performBlock();
        return true;
    }
    const auto scroll = scrollOf(event.keyCode);
    if (scroll) parts_.view.scroll(*scroll);
    return scroll || event.keyCode == kKeyTab;
}

// ---- Holding

void Help::watchHolding(const KeyEvent& event) {
    const uint64_t modifiers = event.modifierFlags & kHeldModifiers;
    const uint64_t before = std::exchange(heldModifiers_, modifiers);
    const bool isModifier = event.kind == KeyEvent::Kind::flagsChanged;
    if (isModifier && modifiers == before) return;  // auto-repeat
    endHolding();
    // Only from no modifier at all: what is left of a longer chord is not a question.
    if (isModifier && before == 0 && modifiers == kModifierCommand) startHolding();
}

void Help::startHolding() {
    holding_.start(kHolding, [this] { askDisk(); });
}

void Help::selectionDidChange() {
    const bool isHeld = holding_.isRunning() || isAsking_;
    if (!isHeld && parts_.view.shown() != HelpView::Kind::passing) return;
    endHolding();
    startHolding();
}

void Help::endHolding() {
    stopWaiting();
    if (parts_.view.shown() == HelpView::Kind::passing) parts_.view.hide();
}

void Help::stopWaiting() {
    holding_.stop();
    asking_++;
    isAsking_ = false;
}

TRVModeRepresentingFiles* Help::modeInUse() const {
    auto* const mode = dynamic_cast<TRVModeRepresentingFiles*>(parts_.host.currentMode());
    const bool hasTheUser = parts_.window.isMainWindowVisible() && parts_.application.isActive() &&
                            !parts_.guard.isHidingPrevented();
    return mode && hasTheUser && mode->renameState() == 0 && !parts_.view.shown() ? mode : nullptr;
}

void Help::askDisk() {
    TRVModeRepresentingFiles* const mode = modeInUse();
    if (!mode) return;
    std::vector<FileURL> items = mode->clickedOrSelectedURLs();
    if (items.empty()) return;
    isAsking_ = true;
    queue_.addBlock(
        [this, asking = ++asking_, items = std::move(items),
         commands = helpContent::commandsForSelection({parts_.shortcuts, mode->identifier()})] {
            auto refusals = refusalsOf(itemsLookedAt(items), commands);
            MainQueue::async([this, asking, items, refusals = std::move(refusals)] {
                if (asking == asking_) showKeysForSelection(items, refusals);
            });
        });
}

void Help::showKeysForSelection(const std::vector<FileURL>& items, const Refusals& refusals) {
    isAsking_ = false;
    TRVModeRepresentingFiles* const mode = modeInUse();
    if (!mode || mode->clickedOrSelectedURLs() != items) return;
    auto groups = helpContent::keysForSelection({parts_.shortcuts, mode->identifier()}, refusals);
    if (groups.empty()) return;
    parts_.view.show(HelpView::Kind::passing,
                     {.title = describe(items), .groups = std::move(groups)});
}

void Help::reset() {
    stopWaiting();
    heldModifiers_ = 0;
    if (parts_.view.shown()) parts_.view.hide();
}
