#include "shell/ContextMenu.h"

#include "core/HidingGuard.h"
#include "core/SearchFieldController.h"
#include "core/SearchWindowController.h"
#include "core/UserMessages.h"
#include "core/state/GlobalState.h"
#include "modes/framework/ModeHost.h"
#include "modes/framework/TRVModeRepresentingFiles.h"
#include "shell/ItemActions.h"
#include "shell/updateSearchStringHistory.h"

namespace {
bool canPaste() {
    return GlobalState::sharedInstance().currentPasteboardAction() != 0;
}
}  // namespace

ContextMenu::~ContextMenu() {
    parts_.view.close();
}

TRVModeRepresentingFiles* ContextMenu::mode() const {
    auto* const files = dynamic_cast<TRVModeRepresentingFiles*>(parts_.host.currentMode());
    return files && files->renameState() == 0 ? files : nullptr;
}

void ContextMenu::openAt(Point place) {
    if (isOpen()) return;
    if (auto* const files = mode()) open(*files, {.corner = place});
    if (!isOpen()) parts_.host.resultTable().setClickedRow(std::nullopt);
}

bool ContextMenu::openAtSelection() {
    auto* const files = mode();
    if (!files || isOpen()) return false;
    ResultTableView& table = parts_.host.resultTable();
    const auto row = table.selectedRow();
    if (!row) {
        parts_.messages.error("No item selected");
        return true;
    }
    table.scrollRowToVisible(*row);
    open(*files, {.corner = table.menuPlaceOfRow(*row), .isByKey = true});
    return true;
}

void ContextMenu::open(TRVModeRepresentingFiles& mode, const MenuView::Place& place) {
    items_ = mode.clickedOrSelectedURLs();
    if (items_.empty()) return;
    commands_ = contextMenuContent::commandsOf(parts_.shortcuts, mode.identifier());
    opening_++;
    parts_.guard.preventHiding();
    const ModeLook& look = mode.look();
    parts_.view.popUp(contextMenuContent::items(commands_, nullptr, canPaste()),
                      {.hue = look.background.hue, .isDark = look.isDark}, place,
                      [this](const std::optional<MenuChoice>& choice) { ended(choice); });
    askDisk();
}

void ContextMenu::askDisk() {
    queue_.addBlock([this, opening = opening_, items = items_, commands = commands_] {
        auto facts = contextMenuContent::factsOf(items, commands, parts_.applications);
        MainQueue::async([this, opening, commands, facts = std::move(facts)] {
            if (opening == opening_ && isOpen())
                parts_.view.update(contextMenuContent::items(commands, &facts, canPaste()));
        });
    });
}

void ContextMenu::ended(const std::optional<MenuChoice>& choice) {
    parts_.guard.allowHiding();
    if (choice) perform(*choice);
    parts_.host.resultTable().setClickedRow(std::nullopt);
    if (parts_.window.isMainWindowVisible() && mode()) parts_.field.focusOnSearchField();
}

bool ContextMenu::isForTheSameItems() {
    TRVModeRepresentingFiles* const files = mode();
    if (!files) return false;
    ResultTableView& table = parts_.host.resultTable();
    if (files->clickedOrSelectedURLs() == items_) return true;
    if (!table.clickedRow() || items_.size() != 1) return false;
    table.setClickedRow(files->rowIndexOfFilteredItemByURL(items_.front()));
    return table.clickedRow() && files->clickedOrSelectedURLs() == items_;
}

void ContextMenu::perform(const MenuChoice& choice) {
    if (!isForTheSameItems()) {
        parts_.messages.error("The list has changed meanwhile");
        return;
    }
    updateSearchStringHistory(parts_.host);
    if (choice.submenu == contextMenuContent::kOpenWith) {
        parts_.actions.actionOpenWith(items_, choice.identifier);
        return;
    }
    if (const auto command = parts_.shortcuts.keyboardShortcutDefinitionFor(choice.identifier))
        command->performBlock();
}
