#include "util/queues/Qos.h"

#include <pthread.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdio>

#include "util/log.h"

namespace {
// From the kernel's ioprio.h, which user space does not get: class idle, for this thread.
constexpr int kIoprioWhoProcess = 1;
constexpr int kIoprioIdle = 3 << 13;

int niceValue(Qos qos) {
    switch (qos) {
        case Qos::background:
            return 10;
        case Qos::utility:
            return 5;
        case Qos::userInitiated:
        case Qos::userInteractive:
            return 0;
    }
    return 0;
}
}  // namespace

void enterQueueThread(const char* label, Qos qos) {
    char name[16];  // the kernel's limit
    std::snprintf(name, sizeof name, "%s", label);
    pthread_setname_np(pthread_self(), name);
    logging::setThreadLabel(label);
    const auto thread = static_cast<id_t>(syscall(SYS_gettid));
    if (const int nice = niceValue(qos)) setpriority(PRIO_PROCESS, thread, nice);
    if (qos == Qos::background) syscall(SYS_ioprio_set, kIoprioWhoProcess, 0, kIoprioIdle);
}
