#include "modes/framework/TRVModeSupportingPath.h"

#include "modes/framework/ModeHost.h"
#include "screen/ResultTableView.h"
#include "util/log.h"
#include "util/queues/MainQueue.h"

bool TRVModeSupportingPath::handleFocusOrIgnoreSelectedURL(Narrowing narrowing) {
    const std::vector<FileURL> urls = urlsOfFilteredItemsAtIndexSet(
        host().numberOfRows() > 0 ? host().resultTable().selectedRows() : std::vector<size_t>());
    if (urls.empty()) {
        host().error("No item selected");
        return true;
    }
    switchModeQueue().async([this, narrowing, urls] {
        for (const FileURL& url : urls) {
            if (narrowing == Narrowing::focus)
                focusURL(url);
            else
                ignoreURL(url);
        }
    });
    return true;
}

void TRVModeSupportingPath::narrow(const FileURL& url, LivePathFilter::Rule rule) {
    if (MainQueue::isMainThread()) logError("Must not be called on main thread!");
    livePathFilter_.addPath(url, rule);
    searchFromTheTop();
}

bool TRVModeSupportingPath::resetPathFilter() {
    if (!livePathFilter_.hasRules()) return false;
    livePathFilter_.reset();
    searchFromTheTop();
    return true;
}

void TRVModeSupportingPath::searchFromTheTop() {
    MainQueue::sync([this] {
        if (selection()) selection()->clipOrigin = {};
    });
    host().reloadInBackgroundAnimated(true);
    MainQueue::async([this] { host().updateSearchCriterionIndicators(); });
}
