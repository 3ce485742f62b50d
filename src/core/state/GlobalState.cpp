#include "core/state/GlobalState.h"

#include "util/Timer.h"
#include "util/World.h"
#include "util/log.h"

namespace {
constexpr double kSlowSearchSeconds = 0.2;
}

GlobalState& GlobalState::sharedInstance() {
    return World::current().shared<GlobalState>();
}

void GlobalState::searchInBackgroundForceBlockExecution(ForceBlock force,
                                                        ModeHost::SearchBlock finalBlock) {
    TRVMode* mode = currentMode();
    if (!mode) return;
    // Counted first: a launch that clears the flag from now on sees that it is not the newest.
    const int64_t number = launches_.add(1);
    searchQ_.cancelAllOperations();
    mode->setAbortSearch(true);
    searchLaunchQ_.addBlock([this, mode, force, number, finalBlock = std::move(finalBlock)] {
        searchQ_.waitUntilAllOperationsAreFinished();
        if (isEnding_) return;
        mode->setAbortSearch(false);
        // A newer one waits behind it: this one would search with the same text. Asked after the
        // flag was cleared, so that what the newer one has set is not lost.
        if (force == ForceBlock::no && number != launches_) {
            mode->setAbortSearch(true);
            return;
        }
        searchQ_.addBlock([this, mode, number, force, finalBlock] {
            search(*mode, force, finalBlock);
            lastEnded_ = number;
        });
    });
}

void GlobalState::search(TRVMode& mode, ForceBlock force, const ModeHost::SearchBlock& finalBlock) {
    MainQueue::async([this] {
        if (observer_.started) observer_.started();
    });
    Timer& timer = Timer::sharedInstance();
    timer.start("SEARCH", Timer::Force::yes);
    mode.searchForString(mode.searchString(), [&](bool valid, ChangedRows rows) {
        mode.setLastSearchWasSlow(timer.stop("SEARCH", Timer::Force::yes) > kSlowSearchSeconds);
        MainQueue::async([this, &mode] {
            if (observer_.ended) observer_.ended(mode);
        });
        logIf(processFlags.debugSearch, Debug, "Search done");
        const bool unseen = mode.hasUnseenResult();
        if (force == ForceBlock::no && (mode.abortSearch() || !(valid || unseen))) {
            logIf(processFlags.debugSearch, Debug, "Not performing block");
            mode.setHasUnseenResult(valid || unseen);
            return;
        }
        // What the table has not been told of may differ from it in any row.
        mode.setHasUnseenResult(false);
        if (unseen) rows = std::nullopt;
        logIf(processFlags.debugSearch, Debug, "Performing block");
        if (finalBlock) finalBlock(std::move(rows));
    });
}
