#include "platform/linux/decoder/callFilter.h"

#include <fcntl.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sched.h>
#include <seccomp.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <bit>
#include <cerrno>
#include <cstddef>
#include <initializer_list>
#include <vector>

namespace sandbox {
namespace {

// Newer than the library.
constexpr int kFchmodat2 = 452, kSetxattrat = 463, kRemovexattrat = 466, kOpenTreeAttr = 467,
              kFileSetattr = 469;

// Calls to other processes, to the network, to the kernel's own matters, and all that changes
// files, or locks them: a handle for reading suffices for that.
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
    SCMP_SYS(process_madvise),
    SCMP_SYS(process_mrelease),
    SCMP_SYS(kcmp),
    SCMP_SYS(ioprio_set),
    SCMP_SYS(migrate_pages),
    SCMP_SYS(move_pages),
    SCMP_SYS(msgget),
    SCMP_SYS(msgsnd),
    SCMP_SYS(msgrcv),
    SCMP_SYS(msgctl),
    SCMP_SYS(semget),
    SCMP_SYS(semop),
    SCMP_SYS(semtimedop),
    SCMP_SYS(semctl),
    SCMP_SYS(shmget),
    SCMP_SYS(shmat),
    SCMP_SYS(shmctl),
    SCMP_SYS(mq_open),
    SCMP_SYS(mq_unlink),
    SCMP_SYS(mount),
    SCMP_SYS(umount2),
    SCMP_SYS(move_mount),
    SCMP_SYS(mount_setattr),
    SCMP_SYS(fsopen),
    SCMP_SYS(fsconfig),
    SCMP_SYS(fsmount),
    SCMP_SYS(fspick),
    SCMP_SYS(open_tree),
    kOpenTreeAttr,
    SCMP_SYS(pivot_root),
    SCMP_SYS(chroot),
    SCMP_SYS(swapon),
    SCMP_SYS(swapoff),
    SCMP_SYS(syslog),
    SCMP_SYS(init_module),
    SCMP_SYS(finit_module),
    SCMP_SYS(kexec_load),
    SCMP_SYS(fanotify_init),
    SCMP_SYS(reboot),
    SCMP_SYS(quotactl),
    SCMP_SYS(quotactl_fd),
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
    kSetxattrat,
    SCMP_SYS(removexattr),
    SCMP_SYS(lremovexattr),
    SCMP_SYS(fremovexattr),
    kRemovexattrat,
    kFileSetattr,
    SCMP_SYS(flock),
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

constexpr scmp_datum_t kLow = 0xffffffff;  // all that the kernel reads of an int

/// Whether the filter holds.
bool refuseForbidden() {
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
    // To ask for one's own limits takes a call that can set others'.
    refuse(EPERM, SCMP_SYS(prlimit64), {SCMP_A0(SCMP_CMP_NE, 0), SCMP_A2(SCMP_CMP_NE, 0)});
    // Nor does it outlive who started it.
    refuse(EPERM, SCMP_SYS(prctl), {SCMP_A0(SCMP_CMP_MASKED_EQ, kLow, PR_SET_PDEATHSIG)});
    const bool holds = isWhole && seccomp_load(filter) == 0;
    seccomp_release(filter);
    return holds;
}

/// A call with many uses, of which few are harmless: those where an argument has one of the values.
struct Permitted {
    int call;
    uint32_t argument;
    std::vector<uint32_t> values;
};
std::vector<Permitted> permitted() {
    const auto self = static_cast<uint32_t>(getpid());
    // Others could be named as the receivers of a handle's signals, and a file's flags be changed
    // through a handle for reading. A program can only be told from others by its own number, so a
    // thread that means itself has to say 0.
    return {
        {SCMP_SYS(fcntl),
         1,
         {F_DUPFD, F_DUPFD_CLOEXEC, F_GETFD, F_SETFD, F_GETFL, F_SETFL, F_GETLK, F_GETPIPE_SZ,
          F_SETPIPE_SZ, F_GET_SEALS, F_ADD_SEALS}},
        {SCMP_SYS(ioctl), 1, {FIONREAD, FIOCLEX, FIONCLEX, TCGETS}},
        {SCMP_SYS(tgkill), 0, {self}},  // to end oneself
        {SCMP_SYS(setpriority), 0, {PRIO_PROCESS}},
        {SCMP_SYS(setpriority), 1, {0, self}},
        {SCMP_SYS(sched_setaffinity), 0, {0, self}},
        {SCMP_SYS(sched_setscheduler), 0, {0, self}},
        {SCMP_SYS(sched_setparam), 0, {0, self}},
        {SCMP_SYS(sched_setattr), 0, {0, self}},
    };
}

/// A filter of its own, since the library's rules know no "none of these". Whether it holds.
bool refuseAllBut(const std::vector<Permitted>& permitted) {
    constexpr size_t kLowHalf = std::endian::native == std::endian::big ? sizeof(uint32_t) : 0;
    std::vector<sock_filter> steps;
    const auto load = [&](size_t offset) {
        steps.push_back(BPF_STMT(BPF_LD | BPF_W | BPF_ABS, static_cast<uint32_t>(offset)));
    };
    const auto skip = [&](uint32_t value, size_t ifSame, size_t ifOther) {
        steps.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, value, static_cast<uint8_t>(ifSame),
                                 static_cast<uint8_t>(ifOther)));
    };
    const auto answer = [&](uint32_t action) {
        steps.push_back(BPF_STMT(BPF_RET | BPF_K, action));
    };
    for (const auto& [call, argument, values] : permitted) {
        const size_t count = values.size();
        load(offsetof(seccomp_data, nr));
        skip(static_cast<uint32_t>(call), 0, count + 2);
        load(offsetof(seccomp_data, args) + argument * sizeof(uint64_t) + kLowHalf);
        for (size_t i = 0; i < count; i++) skip(values[i], count - i, 0);
        answer(SECCOMP_RET_ERRNO | EPERM);
    }
    answer(SECCOMP_RET_ALLOW);
    const sock_fprog program{static_cast<unsigned short>(steps.size()), steps.data()};
    return syscall(SYS_seccomp, SECCOMP_SET_MODE_FILTER, SECCOMP_FILTER_FLAG_TSYNC, &program) == 0;
}

}  // namespace

bool filterCalls() {
    // The first also turns away the calls of other machines, which have other numbers.
    return refuseForbidden() && refuseAllBut(permitted());
}

}  // namespace sandbox
