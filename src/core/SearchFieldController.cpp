#include "core/SearchFieldController.h"

#include <utility>

#include "core/ResultTableController.h"
#include "screen/InfoBarView.h"
#include "searchmodes/Decomposition.h"
#include "searchmodes/MetaDataCalendar.h"
#include "searchmodes/MetaDataSearch.h"
#include "shell/registry/SearchHistoryController.h"
#include "util/ProcessFlags.h"
#include "util/Unicode.h"
#include "util/log.h"
#include "util/queues/MainQueue.h"

namespace {

constexpr const char* kNotIndexed =
    "Sizes, dates and owners are not indexed, so this term is ignored.";

StyledText inErrorLook(StyledText text) {
    for (StyledSpan& span : text)
        if (span.look == StyledSpan::Look::plain) span.look = StyledSpan::Look::error;
    return text;
}

}  // namespace

SearchFieldController::SearchFieldController(SearchFieldView& field, InfoBarView& infoBar,
                                             ModeHost& host, ResultTableController& table)
    : field_(field), infoBar_(infoBar), host_(host), table_(table) {}

void SearchFieldController::selectionChanged(TextRange selection) {
    if (cursorUpdatePauses_ > 0) return;
    const TRVMode* mode = host_.currentMode();
    std::u16string text = field_.text();
    const bool textChanged = mode == previousMode_ && text != previousSearchString_;
    previousMode_ = mode;
    previousSearchString_ = std::move(text);
    searchFieldCursorDidChange(selection, textChanged);
}

void SearchFieldController::searchFieldCursorDidChange(TextRange selection, bool textChanged) {
    if (textChanged) {
        searchStringDidChange();
        selection = field_.selection();  // composed characters are fewer
    }
    showMessageFor(selection);
}

void SearchFieldController::showMessageFor(TextRange selection) {
    const size_t length = field_.text().size();
    const RangeMessage* message = rangeMessages_.messageToShow(selection, length);
    if (message)
        showMarqueeInfoField(message->messageType == RangeMessage::kError
                                 ? inErrorLook(message->message)
                                 : message->message);
    else if (needsMetadata_ && selection.length < length)
        showMarqueeInfoField({{kNotIndexed, StyledSpan::Look::plain}});
    else
        hideMarqueeInfoField();
}

void SearchFieldController::searchStringDidChange() {
    TRVMode* mode = host_.currentMode();
    if (!mode) return;
    const uint64_t additionalRows = mode->numberOfAdditionalRows();
    {
        const CursorUpdatePause pause(*this);
        const std::u16string text = field_.text();
        if (isBlank(text)) showEmptyState(*mode);
        if (text.empty())
            forgetMessages();
        else
            updateSearchFieldWithSearchString(nfc(text));
        mode->updateNumberOfAdditionalRows();
    }
    logIf(processFlags.debugSelection, Debug,
          "%p Setting selection to nil; Search string did change", static_cast<void*>(mode));
    mode->forgetSelection();
    host_.searchInBackgroundForceBlockExecution(
        ForceBlock::no, [this, mode, additionalRows](ChangedRows rows) {
            MainQueue::async([this, mode, additionalRows, rows = std::move(rows)]() mutable {
                // Other row heights: all rows are drawn anew.
                if (mode->numberOfAdditionalRows() != additionalRows) rows.reset();
                table_.applyDiffableDataSourceSnapshotAnimated(false, rows);
                table_.adjustWindowHeight();
                mode->resultSetReloaded();
            });
        });
}

void SearchFieldController::showEmptyState(TRVMode& mode) {
    forgetQuery(&mode);
    mode.setSearchString({});
    MainQueue::async([this, &mode] {
        host_.stopSearchAnimation();
        host_.updateTextsOfCurrentMode();
        // Meanwhile there may be a text again.
        if (isBlank(mode.searchString())) mode.searchStringBecameEmpty();
    });
}

void SearchFieldController::updateSearchString(const std::u16string& string) {
    if (!MainQueue::isMainThread()) logError("Must be called from main thread!");
    const CursorUpdatePause pause(*this);
    if (field_.text() != string) field_.setText(string);
    if (TRVMode* mode = host_.currentMode()) mode->setSearchString(string);
    previousSearchString_ = string;
    previousMode_ = host_.currentMode();
}

void SearchFieldController::updateSearchFieldWithSearchString(const std::u16string& string) {
    TRVMode* mode = host_.currentMode();
    const bool listsFiles = mode && (mode->identifier() & kFileModes);
    const auto parser = [weekday = metaDataCalendar::currentFirstWeekday()](auto term) {
        return MetaDataSearch::parseWord(term, weekday);
    };
    Decomposition made = decompose(string, {.processMetadata = processFlags.processMetadata,
                                            .listsFiles = listsFiles,
                                            .parser = parser});
    updateSearchString(string);
    if (mode) mode->visibleAttributes() = std::move(made.visibleAttributes);
    rangeMessages_ = std::move(made.rangeMessages);
    field_.setStyles(made.styles);
    setNeedsMetadata(made.needsMetadata);
}

void SearchFieldController::setNeedsMetadata(bool needs) {
    if (std::exchange(needsMetadata_, needs) != needs) host_.updateSearchCriterionIndicators();
}

void SearchFieldController::replaceSearchString(const std::u16string& string) {
    const CursorUpdatePause pause(*this);
    updateSearchFieldWithSearchString(string);
    if (TRVMode* mode = host_.currentMode()) mode->updateNumberOfAdditionalRows();
    showMessageFor(field_.selection());
}

void SearchFieldController::refreshStyles() {
    const CursorUpdatePause pause(*this);
    if (isSearchFieldEmpty()) return;
    updateSearchFieldWithSearchString(nfc(field_.text()));
    showMessageFor(field_.selection());
}

void SearchFieldController::forgetMessages() {
    rangeMessages_.clearMessageRanges();
    setNeedsMetadata(false);
}

void SearchFieldController::updateSearchFieldWithEmptySearchString() {
    updateSearchString({});
    forgetMessages();
    hideMarqueeInfoField();
    forgetQuery(host_.currentMode());
}

void SearchFieldController::forgetQuery(TRVMode* mode) {
    SearchHistoryController::sharedInstance().resetCursor();
    if (!mode) return;
    mode->visibleAttributes().clear();
    mode->setNumberOfAdditionalRows(0);
}

void SearchFieldController::selectText() {
    const CursorUpdatePause pause(*this);
    field_.selectAll();
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

void SearchFieldController::showMarqueeInfoField(const StyledText& text) {
    infoBar_.setMarquee(text);
}

void SearchFieldController::hideMarqueeInfoField() {
    infoBar_.setMarquee(std::nullopt);
}
