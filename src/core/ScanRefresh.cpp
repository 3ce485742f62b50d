#include "core/ScanRefresh.h"

using namespace std::chrono_literals;

namespace {
constexpr auto kTick = 40ms;
constexpr int kTicksBetween = 8;  // once there are rows
}  // namespace

void ScanRefresh::start() {
    itemsSearched_ = 0;
    ticksToWait_ = 0;
    timer_ = std::make_unique<RepeatingTimer>(kTick, [this] { tick(); });
}

void ScanRefresh::tick() {
    TRVMode* mode = host_.currentMode();
    const uint64_t items = itemCount_();
    if (!mode || !host_.isMainWindowVisible()) return;
    if (++ticks_ % kTicksBetween == 0) told_();
    if (mode->searchString().empty()) return;
    if (items == itemsSearched_ || --ticksToWait_ > 0) return;
    itemsSearched_ = items;
    ticksToWait_ = mode->filteredCount() > 0 ? kTicksBetween : 1;
    host_.reloadInBackgroundAnimated(false);
}
