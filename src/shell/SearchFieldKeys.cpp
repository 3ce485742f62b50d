#include "shell/SearchFieldKeys.h"

#include <algorithm>

#include "core/ItemOpener.h"
#include "core/SearchFieldController.h"
#include "core/SearchWindowController.h"
#include "core/UserMessages.h"
#include "core/state/GlobalState.h"
#include "modes/TRVSearchMode.h"
#include "screen/ResultTableView.h"

namespace {
constexpr uint64_t kBelowModifiers = 131071;  // Caps Lock and device-dependent bits
constexpr uint64_t kArrowFlags = kModifierNumericPad | kModifierFunction;
}  // namespace

bool SearchFieldKeys::handleSearchFieldKeyDownEvent(const KeyEvent& event) {
    const uint64_t flags = event.modifierFlags & ~kBelowModifiers;
    if (handleNavigationKeysWithEvent(event, flags)) return true;
    TRVMode* mode = parts_.host.currentMode();
    if (mode && mode->handleEvent(event)) return true;
    if (event.keyCode == kKeyS && flags == kModifierCommand && parts_.searchMode.isActive()) {
        parts_.searchMode.toggleIgnoreMaximumResultSetSize();
        return true;
    }
    if (event.keyCode == kKeyEscape && flags == 0) {
        escape();
        return true;
    }
    if ((event.keyCode == kKeyReturn || event.keyCode == kKeyEnter) &&
        (flags & ~kModifierNumericPad) == 0)
        return openSelection();
    return false;
}

bool SearchFieldKeys::handleNavigationKeysWithEvent(const KeyEvent& event, uint64_t flags) {
    const bool extend = (flags & kModifierShift) != 0;
    const uint64_t rest = flags & ~kModifierShift;
    const auto all = static_cast<long>(parts_.host.currentMode()->filteredCount());
    const long page = std::max(1L, GlobalState::sharedInstance().maxNumberOfRows() - 1);
    switch (event.keyCode) {
        case kKeyUp:
        case kKeyDown:
            if (rest != kArrowFlags) return false;
            moveSelection(event.keyCode == kKeyUp ? -1 : 1, extend);
            return true;
        case kKeyHome:
        case kKeyEnd:
            if (rest != kModifierFunction) return false;
            moveSelection(event.keyCode == kKeyHome ? -all : all, extend);
            return true;
        case kKeyPageUp:
        case kKeyPageDown:
            if (flags != kModifierFunction) return false;
            moveSelection(event.keyCode == kKeyPageUp ? -page : page, false);
            return true;
        default:
            return false;
    }
}

void SearchFieldKeys::moveSelection(long rows, bool extend) {
    ResultTableView& table = parts_.table;
    const auto count = static_cast<long>(parts_.host.currentMode()->filteredCount());
    if (count == 0 || parts_.field.isSearchFieldEmpty()) return;
    const std::vector<size_t> selected = table.selectedRows();
    long row = rows < 0 ? count - 1 : 0;
    if (!selected.empty())
        row = static_cast<long>(rows < 0 ? selected.front() : selected.back()) + rows;
    row = std::clamp(row, 0L, count - 1);
    table.selectRow(static_cast<size_t>(row), extend);
    table.scrollRowToVisible(static_cast<size_t>(row));
}

void SearchFieldKeys::escape() {
    if (!parts_.field.isSearchFieldEmpty()) {
        parts_.field.clear();
        return;
    }
    parts_.window.hideMainWindow();
}

bool SearchFieldKeys::openSelection() {
    const std::vector<size_t> rows = parts_.table.selectedRows();
    if (rows.empty() || parts_.field.isSearchFieldEmpty()) {
        parts_.messages.error("No item selected");
        return false;
    }
    bool opened = false;
    for (const size_t row : rows)
        if (const auto url = parts_.searchMode.urlOfFilteredItemAtIndex(row))
            opened |= parts_.opener.openFileInDefaultApplication(*url);
    if (opened) parts_.window.hideMainWindow();
    return true;
}
