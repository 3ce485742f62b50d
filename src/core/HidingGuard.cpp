#include "core/HidingGuard.h"

#include "util/queues/MainQueue.h"

void HidingGuard::performBlockPreventingHiding(const std::function<void()>& block) {
    preventHiding();
    block();
    allowHiding();
}

void HidingGuard::didPerformAuthorization() {
    authorizationInProgress_ = false;
    if (MainQueue::isMainThread())
        focusOnSearchField_();
    else
        MainQueue::async(focusOnSearchField_);
}
