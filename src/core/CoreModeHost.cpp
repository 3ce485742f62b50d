#include "core/CoreModeHost.h"

#include "core/HidingGuard.h"
#include "core/Indicators.h"
#include "core/ItemRenamer.h"
#include "core/ModeSwitcher.h"
#include "core/ProjectSwitcher.h"
#include "core/ResultTableController.h"
#include "core/ScanRefresh.h"
#include "core/SearchFieldController.h"
#include "core/UserMessages.h"
#include "core/freshnessText.h"
#include "core/state/GlobalState.h"
#include "modes/TRVMarkedItemsMode.h"
#include "modes/fileRows.h"
#include "util/Unicode.h"
#include "util/log.h"

TRVMode* CoreModeHost::currentMode() const {
    return GlobalState::sharedInstance().currentMode();
}

void CoreModeHost::searchInBackgroundForceBlockExecution(ForceBlock force, SearchBlock block) {
    GlobalState::sharedInstance().searchInBackgroundForceBlockExecution(force, std::move(block));
}

bool CoreModeHost::isSearching() const {
    return GlobalState::sharedInstance().isSearching();
}

void CoreModeHost::reloadInBackgroundAnimated(bool animated) {
    logIf(processFlags.debugSearch, Debug, "Search triggered (reloadInBackground)");
    if (TRVMode* mode = currentMode()) mode->contentMayHaveChanged();
    searchInBackgroundForceBlockExecution(ForceBlock::no, [this, animated](ChangedRows rows) {
        MainQueue::async([this, animated, rows = std::move(rows)] {
            // The mode that is on screen now, which need not be the one that was searched.
            TRVMode* mode = currentMode();
            if (!mode) return;
            mode->updateNumberOfAdditionalRows();
            applyDiffableDataSourceSnapshotAnimated(animated, rows);
            adjustWindowHeight();
            mode->resultSetReloaded();
        });
    });
}

void CoreModeHost::activateMode(TRVMode& mode) {
    parts_->modeSwitcher.activateMode(mode);
}

size_t CoreModeHost::numberOfRows() const {
    return parts_->table.numberOfRows();
}

size_t CoreModeHost::maxNumberOfRows() const {
    return static_cast<size_t>(GlobalState::sharedInstance().maxNumberOfRows());
}

void CoreModeHost::applyDiffableDataSourceSnapshotAnimated(bool animated,
                                                           const ChangedRows& forRows) {
    parts_->table.applyDiffableDataSourceSnapshotAnimated(animated, forRows);
}

void CoreModeHost::adjustWindowHeight() {
    parts_->table.adjustWindowHeight();
}

void CoreModeHost::updateMarkersOfVisibleItems() {
    parts_->table.updateMarkersOfVisibleItems();
}

void CoreModeHost::updateTextsOfCurrentMode() {
    TRVMode* mode = currentMode();
    if (!mode) return;
    views_.field.setPlaceholder(mode->searchFieldPlaceholderText());
    const std::string info = mode->infoString();  // first: it finds out what the tool tip tells
    parts_->messages.setRestingText(info, mode->infoTooltip());
    updateFreshness();
    updateSearchCriterionIndicators();
}

void CoreModeHost::updateSearchCriterionIndicators() {
    parts_->indicators.updateSearchCriterionIndicators();
}

void CoreModeHost::error(const std::string& text) {
    parts_->messages.error(text);
}

void CoreModeHost::updateFreshness() {
    if (!freshness_) return;
    FreshnessText text = freshnessText(freshness_());
    const TRVMode* const mode = currentMode();
    if (text.words.empty() && mode && !isBlank(mode->searchString()) && numberOfRows() == 0)
        text.words = "Nothing found";
    views_.infoBar.setFreshness(text.words, text.toolTip);
}

void CoreModeHost::updateSearchFieldWithEmptySearchString() {
    parts_->field.updateSearchFieldWithEmptySearchString();
}

void CoreModeHost::updateSearchString(const std::u16string& string) {
    parts_->field.replaceSearchString(string);
}

void CoreModeHost::focusOnSearchField() {
    parts_->field.focusOnSearchField();
}

void CoreModeHost::enableSearchField() {
    parts_->field.enableSearchField();
}

void CoreModeHost::disableSearchField() {
    parts_->field.disableSeachField();
}

void CoreModeHost::info(const std::string& text) {
    parts_->messages.info(text);
}

void CoreModeHost::beep() {
    parts_->messages.beep();
}

void CoreModeHost::startSearchAnimation() {
    views_.infoBar.setSearching(true);
}

void CoreModeHost::stopSearchAnimation() {
    views_.infoBar.setSearching(false);
}

void CoreModeHost::startScanAnimation() {
    views_.infoBar.setScanning(true);
    parts_->scanRefresh.start();
    updateTextsOfCurrentMode();
}

void CoreModeHost::stopScanAnimation() {
    views_.infoBar.setScanning(false);
    parts_->scanRefresh.stop();
    updateTextsOfCurrentMode();
}

size_t CoreModeHost::askPreventingHiding(const Alert& alert) {
    size_t button = 0;
    parts_->guard.performBlockPreventingHiding(
        [&] { button = views_.alerts.runModal(alert).button; });
    parts_->field.focusOnSearchField();
    return button;
}

void CoreModeHost::makeCurrentProject(std::shared_ptr<const Project> project) {
    parts_->projectSwitcher.makeCurrentProject(std::move(project));
}

// ---- Files

bool CoreModeHost::isMarked(const FileURL& url) const {
    return parts_->markedItems.isMarked(url);
}

RowContent::Source CoreModeHost::sourceOf(const FileURL& url) const {
    return parts_->markedItems.sourceOf(url);
}

Result<void> CoreModeHost::renameItem(const FileURL& from, const FileURL& to) {
    return parts_->itemRenamer.renameItem(from, to);
}

bool CoreModeHost::reallyTrashItems(const std::vector<FileURL>& urls) {
    if (urls.empty()) return false;
    return askPreventingHiding(
               {.style = Alert::Style::informational,
                .title = urls.size() > 1 ? "Move items to Trash" : "Move item to Trash",
                .text = trashQuestion(urls),
                .buttons = {"Move to Trash", "Cancel"}}) == 0;
}

void CoreModeHost::moveToTrash(const std::vector<FileURL>&) {
    error("There is no trash yet");
}
