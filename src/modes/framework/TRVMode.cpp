#include "modes/framework/TRVMode.h"

#include "modes/framework/ModeHost.h"

bool TRVMode::isActive() const {
    return host_ && host_->currentMode() == this;
}

std::u16string TRVMode::searchString() const {
    std::lock_guard lock(searchStringMutex_);
    return searchString_;
}

void TRVMode::setSearchString(std::u16string string) {
    std::lock_guard lock(searchStringMutex_);
    searchString_ = std::move(string);
}
