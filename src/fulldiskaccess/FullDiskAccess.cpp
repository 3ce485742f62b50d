#include "fulldiskaccess/FullDiskAccess.h"

#include <cerrno>
#include <cstring>
#include <mutex>

#include "platform/DiskAccess.h"
#include "screen/DiskAccessView.h"
#include "util/log.h"
#include "util/queues/MainQueue.h"

using namespace std::chrono_literals;

FullDiskAccess::FullDiskAccess(DiskAccess& access, DiskAccessView& view)
    : access_(access), view_(view) {}

FullDiskAccess::~FullDiskAccess() = default;

bool FullDiskAccess::enabled() {
    const int error = access_.openProtectedFile();
    std::optional<bool> answer;
    if (error == 0)
        answer = true;
    else if (error == EPERM)
        answer = false;
    else
        logWarning("Full Disk Access check failed; Failed to open %s: %s", access_.protectedFile(),
                   std::strerror(error));
    bool tells = false;
    {
        std::lock_guard lock(mutex_);
        tells = lastAnswer_ != answer;
        lastAnswer_ = answer;
    }
    if (tells) changed_.emit(answer);
    return answer.value_or(false);
}

void FullDiskAccess::runFullDiskAccessCheckWithOkBlock(std::function<void()> okBlock,
                                                       std::function<void()> skipBlock) {
    if (enabled()) {
        okBlock();
        return;
    }
    skip_ = false;
    okBlock_ = std::move(okBlock);
    skipBlock_ = std::move(skipBlock);
    view_.show({.later = [this] { skip_ = true; },
                .openSecurityAndPrivacy = [this] { access_.openSecurityAndPrivacy(); }});
    timer_ = std::make_unique<RepeatingTimer>(1s, [this] { tick(); });
}

void FullDiskAccess::tick() {
    if (!skip_ && !enabled()) return;
    timer_.reset();
    view_.hide();
    const auto block = std::move(skip_ ? skipBlock_ : okBlock_);
    block();
}
