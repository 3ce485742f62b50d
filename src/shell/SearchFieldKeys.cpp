#include "shell/SearchFieldKeys.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <condition_variable>
#include <memory>
#include <mutex>

#include "core/HidingGuard.h"
#include "core/ModeSwitcher.h"
#include "core/PreviewController.h"
#include "core/ResultTableController.h"
#include "core/SearchFieldController.h"
#include "core/UserMessages.h"
#include "modes/TRVSearchMode.h"
#include "platform/Updater.h"
#include "screen/Alerts.h"
#include "screen/ResultTableView.h"
#include "shell/ItemActions.h"
#include "shell/ProjectKeys.h"
#include "shell/commands/commands.h"
#include "shell/updateSearchStringHistory.h"
#include "util/Unicode.h"
#include "util/log.h"

using namespace std::chrono_literals;

namespace {

constexpr char16_t kControlW = 23;
constexpr uint64_t kCommandArrow = kModifierCommand | kModifierNumericPad | kModifierFunction;
constexpr uint64_t kShift = kModifierShift;
constexpr auto kPatience = 500ms;  // with a disk, while the user waits

bool showsFiles(const TRVMode& mode) {
    return (mode.identifier() & kFileModes) != 0;
}

bool isHistoryCommand(const KeyboardShortcutDefinition& definition) {
    constexpr std::array kCommands = {"SearchHistoryPrevious", "SearchHistoryNext",
                                      "SearchHistoryRemoveTerm"};
    return std::find(kCommands.begin(), kCommands.end(), definition.identifier()) !=
           kCommands.end();
}

/// A folder that has gone is another matter, and told as such. Waits for the disk, which will
/// answer at once when the mode asks it for the same item.
bool mayBeRenamed(const FileURL& url) {
    const FileURL folder = url.deletingLastPathComponent();
    if (access(folder.c_str(), W_OK) != 0) return errno == ENOENT || errno == ENOTDIR;
    (void)access(url.c_str(), F_OK);
    return true;
}

}  // namespace

SearchFieldKeys::SearchFieldKeys(const Parts& parts)
    : parts_(parts),
      navigation_(parts.table, parts.rows),
      keyboardShortcuts_(parts.shortcuts.sections(
          {"Switching modes", "General", "Selection", "File Management", "Search History"})) {}

bool SearchFieldKeys::searchFieldMayReceiveInput() const {
    return !parts_.guard.isHidingPrevented() && !parts_.preview.isVisible() &&
           parts_.field.isSearchFieldEnabled();
}

bool SearchFieldKeys::previewKeyDown(const KeyEvent& event) {
    const uint64_t flags = maskedModifierFlags(event.modifierFlags);
    if (event.keyCode == kKeyEscape && flags == 0) {
        parts_.preview.close();
        return true;
    }
    if (event.keyCode == kKeyReturn && flags == 0)
        return openSelection(OpenWith::defaultApplication);
    constexpr uint64_t kCommands =
        kModifierCommand | kModifierControl | kModifierOption | kModifierFunction;
    if ((flags & kCommands) == 0) return false;
    const bool handled = handleSearchFieldKeyDownEvent(event);
    parts_.preview.selectionMayHaveChanged();  // also to another part of the row's path
    return handled;
}

bool SearchFieldKeys::searchFieldKeyDown(const KeyEvent& event) {
    if (searchFieldMayReceiveInput() && handleSearchFieldKeyDownEvent(event)) return true;
    if (parts_.preview.isVisible() && !parts_.guard.isHidingPrevented() &&
        parts_.field.isSearchFieldEnabled() && previewKeyDown(event))
        return true;
    // The usual keys for cancelling must not empty the field.
    const uint64_t flags = maskedModifierFlags(event.modifierFlags);
    const bool cancels = (flags == kModifierCommand && event.keyCode == kKeyPeriod) ||
                         (flags == kModifierOption && event.keyCode == kKeyEscape);
    if (cancels) parts_.messages.beep();
    return cancels;
}

bool SearchFieldKeys::handleSearchFieldKeyDownEvent(const KeyEvent& event) {
    if (!MainQueue::isMainThread()) logError("Must be called on main thread!");
    TRVMode* const mode = parts_.host.currentMode();
    if (!mode || parts_.updater.sessionInProgress() || mode->renameState() != 0) return false;
    if (mode->handleEvent(event)) {
        refreshTexts();
        return true;
    }
    if (handleNavigationKeysWithEvent(event, *mode)) {
        forgetPathSelection(*mode);
        refreshTexts();
        return true;
    }
    const uint64_t flags = maskedModifierFlags(event.modifierFlags);
    if (const auto handled = handleFixedKey(event, flags, *mode)) return *handled;
    return handleShortcut(event, *mode) || handleUserDefinedAction(event, *mode);
}

void SearchFieldKeys::forgetPathSelection(TRVMode& mode) {
    // The row may stay the selected one: it shows its path as plain again.
    if (auto* const paths = dynamic_cast<TRVModeSupportingPath*>(&mode))
        paths->clearPathSelection();
    if (mode.selection()) mode.selection()->pathSelection.reset();
}

void SearchFieldKeys::refreshTexts() {
    parts_.host.updateTextsOfCurrentMode();
    parts_.field.focusOnSearchField();
}

bool SearchFieldKeys::handleNavigationKeysWithEvent(const KeyEvent& event, const TRVMode& mode) {
    if (mode.renameState() != 0) return false;
    auto movement = navigation_.movementFor(event);
    if (!movement) return false;
    MainQueue::async(std::move(movement));
    return true;
}

std::optional<bool> SearchFieldKeys::handleFixedKey(const KeyEvent& event, uint64_t flags,
                                                    TRVMode& mode) {
    switch (event.keyCode) {
        case kKeyEscape:
            if (flags != 0) break;
            escape();
            return true;
        case kKeyTab:
            return handleTab(event);
        case kKeyReturn:
            if (const auto handled = handleReturn(flags, event.isRepeat, mode)) return handled;
            break;
        case kKeyMenu:
        case kKeyF10:
            if ((flags & ~kModifierFunction) != (event.keyCode == kKeyMenu ? 0 : kShift)) break;
            return parts_.openContextMenu();
        case kKeyDelete:
            if (flags != kModifierCommand) break;
            deleteSelection(mode);
            return true;
        case kKeyDown:
            if (flags != kCommandArrow || !showsFiles(mode)) break;
            if (const auto browse =
                    parts_.shortcuts.keyboardShortcutDefinitionFor("BrowseSelection"))
                browse->performBlock();
            return true;
        case kKeySpace:
            if (flags == 0 && isWholeTextSelected(mode)) return true;
            break;
        default:
            break;
    }
    if (!event.characters.empty() && event.characters.front() == kControlW) {
        deleteWord();
        return true;
    }
    return parts_.projectKeys.handleDigit(event.keyCode, flags, mode);
}

std::optional<bool> SearchFieldKeys::handleReturn(uint64_t flags, bool isRepeat, TRVMode& mode) {
    const bool withShift = (flags & kShift) != 0;
    switch (flags & ~kShift) {
        case 0:
            return openSelection(withShift ? OpenWith::frontMostApplication
                                           : OpenWith::defaultApplication);
        case kModifierOption:
            return copyToClipboard(withShift, mode);
        case kModifierCommand:
            updateSearchStringHistory(parts_.host);
            return sayNotAvailable(parts_.messages, withShift ? "Type Filename" : "Type Path");
        default:
            break;
    }
    if (flags == (kModifierControl | kModifierOption)) {
        updateSearchStringHistory(parts_.host);
        return sayNotAvailable(parts_.messages, "Copy File Content to Clipboard");
    }
    if (flags == kModifierControl && (showsFiles(mode) || mode.identifier() == kProjectMode)) {
        if (!isRepeat) rename(mode);
        return true;
    }
    return std::nullopt;
}

void SearchFieldKeys::rename(TRVMode& mode) {
    auto* const files = dynamic_cast<TRVModeRepresentingFiles*>(&mode);
    if (!files) {
        sayNotAvailable(parts_.messages, "Rename");
        return;
    }
    const std::vector<size_t> rows = parts_.host.resultTable().selectedRows();
    if (rows.size() != 1) return;
    updateSearchStringHistory(parts_.host);
    const auto url = files->selectedURLOfFilteredItemAtIndex(rows.front());
    const auto may = url ? askDisk(*url) : true;
    if (!may) {
        parts_.messages.error("The disk does not answer");
        return;
    }
    if (!*may) {
        parts_.host.askPreventingHiding(
            {.style = Alert::Style::critical,
             .title = "Permission denied",
             .text = "Cannot rename “" + displayText(url->lastPathComponent()) + "”.",
             .buttons = {"OK"}});
        return;
    }
    // The list may have become another while the disk was asked.
    if (files->selectedURLOfFilteredItemAtIndex(rows.front()) != url) return;
    files->setRenameState(TRVModeRepresentingFiles::kRenameRequested);
    parts_.rows.updateActionIcons();
    parts_.field.disableSeachField();
    files->prepareRenameSelectionAtRow(rows.front());
}

// It waits, but not for long: the keys that follow are for the editor.
std::optional<bool> SearchFieldKeys::askDisk(const FileURL& url) {
    struct Answer {
        std::mutex mutex;
        std::condition_variable comes;
        std::optional<bool> mayBeRenamed;
    };
    const auto answer = std::make_shared<Answer>();
    mayRenameQ_.addBlock([answer, url] {
        const bool may = mayBeRenamed(url);
        const std::lock_guard lock(answer->mutex);
        answer->mayBeRenamed = may;
        answer->comes.notify_all();
    });
    std::unique_lock lock(answer->mutex);
    answer->comes.wait_for(lock, kPatience, [&] { return answer->mayBeRenamed.has_value(); });
    return answer->mayBeRenamed;
}

void SearchFieldKeys::deleteSelection(TRVMode& mode) {
    auto* const files = dynamic_cast<TRVModeRepresentingFiles*>(&mode);
    if (!files || !showsFiles(mode)) return;
    updateSearchStringHistory(parts_.host);
    files->deleteItems(files->clickedOrSelectedURLs());
}

bool SearchFieldKeys::copyToClipboard(bool filenameOnly, TRVMode& mode) {
    updateSearchStringHistory(parts_.host);
    const std::vector<FileURL> urls = selectedURLs(&mode);
    return filenameOnly ? parts_.actions.actionCopyFilenameToClipboard(urls)
                        : parts_.actions.actionCopyPathToClipboard(urls);
}

bool SearchFieldKeys::handleTab(const KeyEvent& event) {
    if (event.isRepeat) return true;
    updateSearchStringHistory(parts_.host);
    TRVMode::switchModeQueue().async([this] {
        // Of the mode to which the keys before have led.
        const ModeIdentifier other = parts_.searchMode.isActive() ? kBrowserMode : kSearchMode;
        TRVMode* const mode = parts_.modeSwitcher.modeWithIdentifier(other);
        if (!mode) return;
        parts_.modeSwitcher.activateMode(*mode);
        parts_.host.reloadInBackgroundAnimated(false);
    });
    return true;
}

bool SearchFieldKeys::isWholeTextSelected(const TRVMode& mode) const {
    const TextRange selection = parts_.fieldView.selection();
    return selection.location == 0 && selection.length == mode.searchString().size();
}

bool SearchFieldKeys::handleShortcut(const KeyEvent& event, const TRVMode& mode) {
    const auto processed = KeyboardShortcuts::process(keyboardShortcuts_, event, mode.identifier());
    if (!processed) return false;
    if (showsFiles(mode) && !isHistoryCommand(*processed->triggered))
        updateSearchStringHistory(parts_.host);
    parts_.field.focusOnSearchField();
    return true;
}

bool SearchFieldKeys::handleUserDefinedAction(const KeyEvent& event, const TRVMode& mode) {
    const auto definition = parts_.shortcuts.userDefinedActionShortcutMatchingEvent(event);
    if (!definition || !showsFiles(mode)) return false;
    if (selectedURLs(parts_.host.currentMode()).empty()) {
        parts_.messages.error("Action requires a selection");
        return false;
    }
    updateSearchStringHistory(parts_.host);
    return definition->performBlock();
}
