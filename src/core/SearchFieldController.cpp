#include "core/SearchFieldController.h"

#include "core/ResultTableController.h"
#include "util/Unicode.h"
#include "util/queues/MainQueue.h"

SearchFieldController::SearchFieldController(SearchFieldView& field, ModeHost& host,
                                             ResultTableController& table)
    : field_(field), host_(host), table_(table) {}

void SearchFieldController::searchStringDidChange() {
    TRVMode* mode = host_.currentMode();
    if (!mode || pauseCursorUpdateNotifications_) return;
    const std::u16string text = field_.text();
    mode->setSearchString(nfc(text));
    if (isBlank(text)) {
        mode->searchStringBecameEmpty();
        host_.updateTextsOfCurrentMode();
    }
    mode->forgetSelection();
    host_.searchInBackgroundForceBlockExecution(ForceBlock::no, [this, mode](ChangedRows rows) {
        MainQueue::async([this, mode, rows = std::move(rows)] {
            table_.applyDiffableDataSourceSnapshotAnimated(false, rows);
            table_.adjustWindowHeight();
            mode->resultSetReloaded();
        });
    });
}

void SearchFieldController::updateSearchString(const std::u16string& string) {
    pauseCursorUpdateNotifications_ = true;
    field_.setText(string);
    if (TRVMode* mode = host_.currentMode()) mode->setSearchString(string);
    pauseCursorUpdateNotifications_ = false;
}

void SearchFieldController::updateSearchFieldWithEmptySearchString() {
    updateSearchString({});
}

void SearchFieldController::clear() {
    TRVMode* mode = host_.currentMode();
    updateSearchFieldWithEmptySearchString();
    if (!mode) return;
    mode->forgetSelection();
    mode->searchStringBecameEmpty();
    host_.updateTextsOfCurrentMode();
    host_.reloadInBackgroundAnimated(false);
}

bool SearchFieldController::isSearchFieldEmpty() const {
    return field_.text().empty();
}

void SearchFieldController::focusOnSearchField() {
    field_.focus();
}

void SearchFieldController::updatePlaceholder() {
    if (TRVMode* mode = host_.currentMode())
        field_.setPlaceholder(mode->searchFieldPlaceholderText());
}
