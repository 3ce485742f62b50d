#include "platform/linux/decoder/sandbox.h"

#include <fcntl.h>
#include <linux/landlock.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "platform/linux/decoder/callFilter.h"
#include "util/FileIO.h"

namespace sandbox {
namespace {

constexpr rlim_t kMemory = rlim_t{1} << 30, kSeconds = 5, kHandles = 64;
// From the kernel's ioprio.h, which user space does not get: class idle, for this process.
constexpr int kIoprioWhoProcess = 1;
constexpr int kIoprioIdle = 3 << 13;

void limit(__rlimit_resource_t what, rlim_t soft, rlim_t hard) {
    const rlimit limits{soft, hard};
    setrlimit(what, &limits);
}

void allow(int rules, const char* path, uint64_t access) {
    const FileHandle handle(open(path, O_PATH | O_CLOEXEC));
    if (!handle) return;
    const landlock_path_beneath_attr rule{.allowed_access = access, .parent_fd = handle.get()};
    syscall(SYS_landlock_add_rule, rules, LANDLOCK_RULE_PATH_BENEATH, &rule, 0);
}

void confineToSystemFiles(const std::string& programFolder) {
    constexpr uint64_t kReading = LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_READ_DIR;
    constexpr uint64_t kAll = (LANDLOCK_ACCESS_FS_MAKE_SYM << 1) - 1;  // of the oldest kernels
    const landlock_ruleset_attr attributes{.handled_access_fs = kAll};
    const FileHandle rules(
        static_cast<int>(syscall(SYS_landlock_create_ruleset, &attributes, sizeof attributes, 0)));
    if (!rules) return;
    for (const char* folder : {"/usr", "/lib", "/lib64", "/etc", "/var/cache/fontconfig"})
        allow(rules.get(), folder, kReading);
    allow(rules.get(), programFolder.c_str(), kReading);
    allow(rules.get(), "/dev/urandom", LANDLOCK_ACCESS_FS_READ_FILE);
    syscall(SYS_landlock_restrict_self, rules.get(), 0);
}

}  // namespace

void limitResources(Urgency urgency) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    prctl(PR_SET_DUMPABLE, 0);
    signal(SIGXFSZ, SIG_IGN);  // writing fails instead
    limit(RLIMIT_CORE, 0, 0);
    limit(RLIMIT_CPU, kSeconds, kSeconds + 1);
    limit(RLIMIT_NOFILE, kHandles, kHandles);
    limit(RLIMIT_FSIZE, 0, 0);
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
    limit(RLIMIT_AS, kMemory, kMemory);
#endif
    if (urgency == Urgency::awaited) return;
    setpriority(PRIO_PROCESS, 0, 19);
    syscall(SYS_ioprio_set, kIoprioWhoProcess, 0, kIoprioIdle);
}

bool enter(const std::string& programFolder) {
    prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    confineToSystemFiles(programFolder);
    return filterCalls();
}

}  // namespace sandbox
