#include "platform/linux/followLink.h"

#include <sys/stat.h>

#include <cerrno>
#include <utility>

#include "util/World.h"
#include "util/queues/MainQueue.h"
#include "util/queues/OperationQueue.h"

namespace {

struct LinkQueue {
    OperationQueue queue{"linkQ", 1, Qos::background, OperationQueue::Order::newestFirst};
};

/// Only what is surely not there counts: a folder that may not be entered may hold it.
bool isMissing(const std::string& path) {
    struct stat target {};
    if (stat(path.c_str(), &target) == 0) return false;
    return errno == ENOENT || errno == ELOOP || errno == ENOTDIR;
}

}  // namespace

void followLink(const std::string& path, std::function<void(bool)> answer) {
    World::current().shared<LinkQueue>().queue.addBlock([path, answer = std::move(answer)] {
        MainQueue::async([answer, leads = !isMissing(path)] { answer(leads); });
    });
}
