#include "shell/TableNavigation.h"

#include <algorithm>
#include <vector>

#include "core/ResultTableController.h"
#include "core/WindowGeometry.h"
#include "core/state/GlobalState.h"
#include "screen/KeyEvent.h"
#include "shell/registry/KeyboardShortcutDefinition.h"

namespace {
constexpr uint64_t kArrowFlags = kModifierNumericPad | kModifierFunction;
}

std::function<void()> TableNavigation::movementFor(const KeyEvent& event) {
    const uint64_t flags = maskedModifierFlags(event.modifierFlags);
    const bool extend = (flags & kModifierShift) != 0;
    const uint64_t rest = flags & ~uint64_t{kModifierShift};
    const bool isArrow = event.keyCode == kKeyUp || event.keyCode == kKeyDown;
    if (isArrow) {
        if (rest != kArrowFlags) return {};
        if (event.keyCode == kKeyUp) return [this, extend] { moveSelectionUp(extend); };
        return [this, extend] { moveSelectionDown(extend); };
    }
    const bool scrolls = flags == (kModifierFunction | kModifierCommand);
    if (!scrolls && rest != kModifierFunction) return {};
    switch (event.keyCode) {
        case kKeyHome:
            if (scrolls) return [this] { scrollToBeginningOfDocument(); };
            return [this, extend] { moveSelectionToBeginningOfDocument(extend); };
        case kKeyEnd:
            if (scrolls) return [this] { scrollToEndOfDocument(); };
            return [this, extend] { moveSelectionToEndOfDocument(extend); };
        case kKeyPageUp:
            if (scrolls) return [this] { scrollPageUp(); };
            if (extend) return {};
            return [this] { moveSelectionPageUp(); };
        case kKeyPageDown:
            if (scrolls) return [this] { scrollPageDown(); };
            if (extend) return {};
            return [this] { moveSelectionPageDown(); };
        default:
            return {};
    }
}

std::optional<TableNavigation::Range> TableNavigation::selectedRange(bool up) const {
    const std::vector<size_t> rows = table_.selectedRows();
    if (rows.empty()) return std::nullopt;
    const size_t first = rows.front(), last = rows.back();
    // The end that the keys moved last, unless something else was selected since.
    const bool isOurs =
        std::min(last_.anchor, last_.lead) == first && std::max(last_.anchor, last_.lead) == last;
    if (isOurs) return last_;
    return up ? Range{.anchor = last, .lead = first} : Range{.anchor = first, .lead = last};
}

void TableNavigation::moveSelection(long rows, bool extend) {
    const auto count = static_cast<long>(rows_.numberOfRows());
    if (count == 0) return;
    const bool up = rows < 0;
    const auto range = selectedRange(up);
    if (!range) {
        const auto row = static_cast<size_t>(up ? count - 1 : 0);
        select(row, row);
        return;
    }
    const std::vector<size_t> selected = table_.selectedRows();
    const auto from = static_cast<long>(extend ? range->lead
                                        : up   ? selected.front()
                                               : selected.back());
    const auto lead = static_cast<size_t>(std::clamp(from + rows, 0L, count - 1));
    select(extend ? range->anchor : lead, lead);
}

void TableNavigation::moveSelectionToBeginningOfDocument(bool extend) {
    moveSelection(-static_cast<long>(rows_.numberOfRows()), extend);
}

void TableNavigation::moveSelectionToEndOfDocument(bool extend) {
    moveSelection(static_cast<long>(rows_.numberOfRows()), extend);
}

void TableNavigation::moveSelectionPageUp() {
    moveSelection(-static_cast<long>(rowsOfPage()), false);
}

void TableNavigation::moveSelectionPageDown() {
    moveSelection(static_cast<long>(rowsOfPage()), false);
}

void TableNavigation::select(size_t anchor, size_t lead) {
    last_ = {.anchor = anchor, .lead = lead};
    table_.selectRows(std::min(anchor, lead), std::max(anchor, lead));
    table_.scrollRowToVisible(lead);
}

size_t TableNavigation::rowsOfPage() const {
    // One row of the old page stays in sight.
    return static_cast<size_t>(std::max(1L, GlobalState::sharedInstance().maxNumberOfRows() - 1));
}

double TableNavigation::rowPitch() const {
    return rows_.heightOfRow() + WindowGeometry::kRowSpacing;
}

void TableNavigation::scrollToBeginningOfDocument() {
    table_.setClipOrigin({0, 0});
}

void TableNavigation::scrollToEndOfDocument() {
    table_.setClipOrigin({0, static_cast<double>(rows_.numberOfRows()) * rowPitch()});
}

void TableNavigation::scrollPages(double pages) {
    const double page = static_cast<double>(rowsOfPage()) * rowPitch();
    table_.setClipOrigin({0, std::max(0.0, table_.clipOrigin().y + pages * page)});
}
