#include "platform/linux/decoder/sandbox.h"

#include <fcntl.h>
#include <linux/landlock.h>
#include <sched.h>
#include <seccomp.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <initializer_list>

#include "util/FileIO.h"

namespace sandbox {
namespace {

constexpr rlim_t kMemory = rlim_t{1} << 30, kSeconds = 5, kHandles = 64;
// From the kernel's ioprio.h, which user space does not get: class idle, for this process.
constexpr int kIoprioWhoProcess = 1;
constexpr int kIoprioIdle = 3 << 13;
constexpr int kFchmodat2 = 452;  // newer than the library

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

// Calls to other processes, to the network, to the kernel's own matters, and all that changes
// files.
constexpr int kForbidden[] = {
    SCMP_SYS(socket),
    SCMP_SYS(socketpair),
    SCMP_SYS(connect),
    SCMP_SYS(bind),
    SCMP_SYS(listen),
    SCMP_SYS(sendto),
    SCMP_SYS(sendmsg),
    SCMP_SYS(sendmmsg),
    SCMP_SYS(execve),
    SCMP_SYS(execveat),
    SCMP_SYS(fork),
    SCMP_SYS(vfork),
    SCMP_SYS(ptrace),
    SCMP_SYS(process_vm_readv),
    SCMP_SYS(process_vm_writev),
    SCMP_SYS(kill),
    SCMP_SYS(tkill),
    SCMP_SYS(rt_sigqueueinfo),
    SCMP_SYS(rt_tgsigqueueinfo),
    SCMP_SYS(pidfd_open),
    SCMP_SYS(pidfd_getfd),
    SCMP_SYS(pidfd_send_signal),
    SCMP_SYS(shmat),
    SCMP_SYS(shmctl),
    SCMP_SYS(mq_open),
    SCMP_SYS(mq_unlink),
    SCMP_SYS(mount),
    SCMP_SYS(umount2),
    SCMP_SYS(move_mount),
    SCMP_SYS(fsopen),
    SCMP_SYS(open_tree),
    SCMP_SYS(pivot_root),
    SCMP_SYS(chroot),
    SCMP_SYS(swapon),
    SCMP_SYS(reboot),
    SCMP_SYS(quotactl),
    SCMP_SYS(bpf),
    SCMP_SYS(perf_event_open),
    SCMP_SYS(keyctl),
    SCMP_SYS(add_key),
    SCMP_SYS(request_key),
    SCMP_SYS(userfaultfd),
    SCMP_SYS(unshare),
    SCMP_SYS(setns),
    SCMP_SYS(creat),
    SCMP_SYS(unlink),
    SCMP_SYS(unlinkat),
    SCMP_SYS(rename),
    SCMP_SYS(renameat),
    SCMP_SYS(renameat2),
    SCMP_SYS(link),
    SCMP_SYS(linkat),
    SCMP_SYS(symlink),
    SCMP_SYS(symlinkat),
    SCMP_SYS(mkdir),
    SCMP_SYS(mkdirat),
    SCMP_SYS(rmdir),
    SCMP_SYS(mknod),
    SCMP_SYS(mknodat),
    SCMP_SYS(chmod),
    SCMP_SYS(fchmod),
    SCMP_SYS(fchmodat),
    kFchmodat2,
    SCMP_SYS(chown),
    SCMP_SYS(fchown),
    SCMP_SYS(lchown),
    SCMP_SYS(fchownat),
    SCMP_SYS(truncate),
    SCMP_SYS(ftruncate),
    SCMP_SYS(fallocate),
    SCMP_SYS(utime),
    SCMP_SYS(utimes),
    SCMP_SYS(futimesat),
    SCMP_SYS(utimensat),
    SCMP_SYS(setxattr),
    SCMP_SYS(lsetxattr),
    SCMP_SYS(fsetxattr),
    SCMP_SYS(removexattr),
    SCMP_SYS(lremovexattr),
    SCMP_SYS(fremovexattr),
    SCMP_SYS(open_by_handle_at),
};
// Those that pass their flags behind a pointer: the C library then asks in the older way.
constexpr int kUnknown[] = {SCMP_SYS(clone3), SCMP_SYS(openat2), SCMP_SYS(io_uring_setup)};

/// The bits that open a file for anything but reading: mask, and what it may not leave. The kernel
/// also knows the access 3, for devices alone, and empties a file that is opened for reading.
struct OpenFlags {
    scmp_datum_t mask, forbidden;
};
constexpr scmp_datum_t kUnnamed = O_TMPFILE & ~O_DIRECTORY;
constexpr OpenFlags kForbiddenFlags[] = {
    {O_ACCMODE, O_WRONLY}, {O_ACCMODE, O_RDWR}, {O_ACCMODE, 3},
    {O_TRUNC, O_TRUNC},    {O_CREAT, O_CREAT},  {kUnnamed, kUnnamed},
};

/// Whether the filter holds.
bool forbidCalls() {
    const scmp_filter_ctx filter = seccomp_init(SCMP_ACT_ALLOW);
    if (!filter) return false;
    bool isWhole = seccomp_attr_set(filter, SCMP_FLTATR_CTL_TSYNC, 1) == 0;
    const auto refuse = [&](int code, int call, std::initializer_list<scmp_arg_cmp> where) {
        isWhole &= seccomp_rule_add_array(filter, SCMP_ACT_ERRNO(static_cast<uint16_t>(code)), call,
                                          static_cast<unsigned>(where.size()), where.begin()) == 0;
    };
    for (const int call : kForbidden) refuse(EPERM, call, {});
    for (const int call : kUnknown) refuse(ENOSYS, call, {});
    refuse(EPERM, SCMP_SYS(clone), {SCMP_A0(SCMP_CMP_MASKED_EQ, CLONE_THREAD, 0)});
    for (const auto& [mask, forbidden] : kForbiddenFlags) {
        refuse(EPERM, SCMP_SYS(open), {SCMP_A1(SCMP_CMP_MASKED_EQ, mask, forbidden)});
        refuse(EPERM, SCMP_SYS(openat), {SCMP_A2(SCMP_CMP_MASKED_EQ, mask, forbidden)});
    }
    // To end oneself takes a signal, and to ask for one's own limits a call that can set others'.
    const auto self = static_cast<scmp_datum_t>(getpid());
    refuse(EPERM, SCMP_SYS(tgkill), {SCMP_A0(SCMP_CMP_NE, self)});
    refuse(EPERM, SCMP_SYS(prlimit64), {SCMP_A0(SCMP_CMP_NE, 0), SCMP_A2(SCMP_CMP_NE, 0)});
    refuse(EPERM, SCMP_SYS(ioctl), {SCMP_A1(SCMP_CMP_MASKED_EQ, 0xffffffff, TIOCSTI)});
    const bool holds = isWhole && seccomp_load(filter) == 0;
    seccomp_release(filter);
    return holds;
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
#ifndef __SANITIZE_ADDRESS__
    limit(RLIMIT_AS, kMemory, kMemory);
#endif
    if (urgency == Urgency::awaited) return;
    setpriority(PRIO_PROCESS, 0, 19);
    syscall(SYS_ioprio_set, kIoprioWhoProcess, 0, kIoprioIdle);
}

bool enter(const std::string& programFolder) {
    prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    confineToSystemFiles(programFolder);
    return forbidCalls();
}

}  // namespace sandbox
