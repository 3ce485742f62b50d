#include "core/HidingGuard.h"

#include "util/queues/MainQueue.h"

void HidingGuard::performBlockPreventingHiding(const std::function<void()>& block) {
    struct Hold {
        explicit Hold(HidingGuard& g) : guard(g) { guard.preventHiding(); }
        ~Hold() { guard.allowHiding(); }
        HidingGuard& guard;
    };
    const Hold hold(*this);
    block();
}

void HidingGuard::didPerformAuthorization() {
    authorizationInProgress_ = false;
    if (MainQueue::isMainThread())
        focusOnSearchField_();
    else
        MainQueue::async(focusOnSearchField_);
}
