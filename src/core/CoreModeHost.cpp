#include "core/CoreModeHost.h"

#include "core/ResultTableController.h"
#include "core/ScanRefresh.h"
#include "core/state/GlobalState.h"

CoreModeHost::CoreModeHost(const Views& views, UserMessages& messages)
    : views_(views), messages_(messages) {}

TRVMode* CoreModeHost::currentMode() const {
    return GlobalState::sharedInstance().currentMode();
}

void CoreModeHost::searchInBackgroundForceBlockExecution(ForceBlock force, SearchBlock block) {
    GlobalState::sharedInstance().searchInBackgroundForceBlockExecution(force, std::move(block));
}

void CoreModeHost::reloadInBackgroundAnimated(bool animated) {
    searchInBackgroundForceBlockExecution(ForceBlock::no, [this, animated](ChangedRows rows) {
        MainQueue::async([this, animated, rows = std::move(rows)] {
            tableController_->applyDiffableDataSourceSnapshotAnimated(animated, rows);
            tableController_->adjustWindowHeight();
            // The mode that is on screen now, which need not be the one that was searched.
            if (TRVMode* mode = currentMode()) mode->resultSetReloaded();
        });
    });
}

void CoreModeHost::updateTextsOfCurrentMode() {
    TRVMode* mode = currentMode();
    if (!mode) return;
    views_.field.setPlaceholder(mode->searchFieldPlaceholderText());
    messages_.setRestingText(mode->infoString(), mode->infoTooltip());
}

void CoreModeHost::startScanAnimation() {
    views_.infoBar.setBusy(true);
    scanRefresh_->start();
    updateTextsOfCurrentMode();
}

void CoreModeHost::stopScanAnimation() {
    views_.infoBar.setBusy(false);
    scanRefresh_->stop();
    updateTextsOfCurrentMode();
}
