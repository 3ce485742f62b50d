#include "platform/linux/events/EventRing.h"

#include <algorithm>

void EventRing::append(const FileEventBatch& batch) {
    if (batch.empty()) return;
    batches_.push_back(batch);
    count_ += batch.size();
    while (count_ > most_) {
        count_ -= batches_.front().size();
        lostId_ = batches_.front().back().id;
        batches_.pop_front();
    }
}

std::optional<std::vector<FileEventBatch>> EventRing::since(uint64_t id) const {
    if (id < lostId_) return {};
    auto first = std::find_if(batches_.begin(), batches_.end(),
                              [id](const FileEventBatch& batch) { return batch.back().id > id; });
    std::vector<FileEventBatch> batches(first, batches_.end());
    if (!batches.empty())
        std::erase_if(batches.front(), [id](const FileEvent& event) { return event.id <= id; });
    return batches;
}
