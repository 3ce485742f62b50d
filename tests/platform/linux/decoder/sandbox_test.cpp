#include "platform/linux/decoder/sandbox.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/fs.h>
#include <linux/landlock.h>
#include <sched.h>
#include <seccomp.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/ipc.h>
#include <sys/msg.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <thread>

#include "support/TemporaryFolder.h"
#include "util/FileIO.h"
#include "util/FunctionRef.h"

namespace {

constexpr int kUnnamed = O_TMPFILE & ~O_DIRECTORY;
constexpr long kFchmodat2 = 452, kSetxattrat = 463, kRemovexattrat = 466, kFileSetattr = 469;
constexpr long kIgnored = long{1} << 32;  // above the part of an argument that the kernel reads

/// Called inside the sandbox; what should not have happened is written to the handle.
class Prisoner {
  public:
    Prisoner(const FileURL& file, int report) : path_(file.c_str()), report_(report) {}
    void prepare() {
        writable_.reset(open(path_, O_RDWR | O_CLOEXEC));
        readable_.reset(open(path_, O_RDONLY | O_CLOEXEC));
        if (socketpair(AF_UNIX, SOCK_STREAM, 0, sockets_) != 0) say("no sockets");
        prlimit(getppid(), RLIMIT_CORE, nullptr, &core_);
    }
    void tryAll() {
        for (const int flags :
             {O_WRONLY, O_RDWR, 3, O_RDONLY | O_TRUNC, O_RDONLY | O_CREAT, O_RDONLY | kUnnamed}) {
            const std::string name = "open with flags " + std::to_string(flags);
            expect(EPERM, name, syscall(SYS_openat, AT_FDCWD, path_, flags, 0600));
#ifdef SYS_open
            expect(EPERM, name, syscall(SYS_open, path_, flags, 0600));
#endif
        }
        expect(EPERM, "unlink", unlink(path_));
        expect(EPERM, "rename", rename(path_, "/tmp/elsewhere"));
        expect(EPERM, "ftruncate", ftruncate(writable_.get(), 0));
        expect(EPERM, "removexattr", removexattr(path_, "user.x"));
        expect(EPERM, "fremovexattr", fremovexattr(readable_.get(), "user.x"));
        expect(EPERM, "utimes", utimes(path_, nullptr));
        expect(EPERM, "fchmodat2", syscall(kFchmodat2, AT_FDCWD, path_, 0, 0));
        expect(EPERM, "socket", socket(AF_UNIX, SOCK_STREAM, 0));
        expect(EPERM, "send", send(sockets_[0], "x", 1, MSG_NOSIGNAL));
        expect(EPERM, "kill", kill(getppid(), 0));
        expect(EPERM, "tgkill", syscall(SYS_tgkill, getppid(), getppid(), 0));
        expect(EPERM, "pidfd_open", syscall(SYS_pidfd_open, getppid(), 0));
        expect(EPERM, "prlimit", prlimit(getppid(), RLIMIT_CORE, &core_, nullptr));
        tryOtherUses();
        char* const none[] = {nullptr};
        expect(EPERM, "execve", execve("/bin/false", none, none));
        const pid_t child = fork();
        if (child == 0) _exit(0);
        expect(EPERM, "fork", child);
        if (syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION) > 0)
            expect(EACCES, "open of a file of the user's", open(path_, O_RDONLY));
    }
    /// Calls that are allowed to serve other ends.
    void tryOtherUses() {
        const pid_t parent = getppid();
        for (const long command : {F_SETOWN, F_SETOWN_EX, F_SETSIG, F_NOTIFY, F_SETLEASE})
            for (const long high : {0L, kIgnored})
                expect(EPERM, "fcntl " + std::to_string(command),
                       syscall(SYS_fcntl, sockets_[0], command | high, parent));
        int flags = 0, owner = parent;
        expect(EPERM, "flags", ioctl(readable_.get(), FS_IOC_SETFLAGS, &flags));
        expect(EPERM, "owner", ioctl(sockets_[0], FIOSETOWN, &owner));
        for (const long number : {kSetxattrat, kRemovexattrat, kFileSetattr})
            expect(EPERM, std::to_string(number), syscall(number, AT_FDCWD, path_, 0, 0, 0, 0));
        expect(EPERM, "msgget", msgget(IPC_PRIVATE, 0600));
        expect(EPERM, "priority", setpriority(PRIO_PROCESS, static_cast<id_t>(parent), 19));
        expect(EPERM, "priority of the group", setpriority(PRIO_PGRP, 0, 19));
        cpu_set_t all;
        std::memset(&all, 0xff, sizeof all);
        expect(EPERM, "processors", sched_setaffinity(parent, sizeof all, &all));
        expect(EPERM, "death", prctl(PR_SET_PDEATHSIG, 0));
    }
    /// What decoders need.
    void tryAllowed() {
        char letter = 0;
        if (read(readable_.get(), &letter, 1) != 1 || letter != 'x') say("no reading");
        if (!FileHandle(open("/etc/passwd", O_RDONLY))) say("no file of the system");
        rlimit own{};
        if (getrlimit(RLIMIT_CORE, &own) != 0 || setrlimit(RLIMIT_CORE, &own) != 0) say("no limit");
        int count = 0;
        if (ioctl(sockets_[0], FIONREAD, &count) != 0) say("no count");
        const sched_param usual{};
        if (fcntl(sockets_[0], F_SETFL, O_NONBLOCK) != 0 ||
            !FileHandle(fcntl(sockets_[0], F_DUPFD_CLOEXEC, 0)))
            say("no handle");
        for (const pid_t self : {0, getpid()})
            if (setpriority(PRIO_PROCESS, static_cast<id_t>(self), 19) != 0 ||
                sched_setscheduler(self, SCHED_OTHER, &usual) != 0)
                say("no rank of its own");
        std::thread([] {}).join();
    }
    void say(const std::string& trouble) const {
        (void)writeAll(report_, trouble + "\n");
    }

  private:
    void expect(int code, const std::string& call, long result) const {
        const int got = errno;
        if (result != -1) say(call + " is possible");
        if (result == -1 && got != code) say(call + ": " + std::strerror(got));
    }

    const char* const path_;
    const int report_;
    FileHandle writable_, readable_;
    int sockets_[2] = {-1, -1};
    rlimit core_{};
};

/// What a child process says, and how it ends.
struct Ended {
    std::string report;
    int status = 0;
};
Ended runChild(FunctionRef<void(int report)> work) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) return {"no pipe"};
    const FileHandle reader(ends[0]);
    FileHandle writer(ends[1]);
    const pid_t child = fork();
    if (child == 0) {
        work(writer.get());
        _exit(0);
    }
    writer.reset();
    Ended ended{std::string(4096, '\0')};
    size_t filled = 0;
    ssize_t count = 0;
    while ((count = read(reader.get(), ended.report.data() + filled, 4096 - filled)) > 0)
        filled += static_cast<size_t>(count);
    ended.report.resize(filled);
    EXPECT_EQ(waitpid(child, &ended.status, 0), child);
    return ended;
}

}  // namespace

TEST(Sandbox, NothingIsWrittenSentStartedOrSignalled) {
#ifdef __SANITIZE_THREAD__
    GTEST_SKIP() << "The child of a program with threads starts one.";
#endif
    const TemporaryFolder folder;
    const FileURL file = folder.file("home/letter", "x");
    const Ended ended = runChild([&](int report) {
        Prisoner prisoner(file, report);
        prisoner.prepare();
        if (!sandbox::enter("/usr/bin")) prisoner.say("enter failed");
        prisoner.tryAll();
        prisoner.tryAllowed();
        raise(SIGTERM);  // of its own a process may dispose
    });
    EXPECT_EQ(ended.report, "");
    EXPECT_TRUE(WIFSIGNALED(ended.status) && WTERMSIG(ended.status) == SIGTERM) << ended.status;
}

TEST(Sandbox, NothingIsDecodedWithoutIt) {
    const TemporaryFolder folder;
    const FileURL path = folder.file("path", folder.file("letter", "x").path());
    const auto decode = [&](int report) {
        dup2(open(path.c_str(), O_RDONLY), STDIN_FILENO);
        dup2(report, STDOUT_FILENO);
        execl(TROVAST_PREVIEW, TROVAST_PREVIEW, "preview", "10", nullptr);
    };
    const Ended usual = runChild(decode);
    EXPECT_NE(usual.report, "");
    EXPECT_EQ(usual.status, 0);
    const Ended refused = runChild([&](int report) {
        const scmp_filter_ctx filter = seccomp_init(SCMP_ACT_ALLOW);
        seccomp_rule_add(filter, SCMP_ACT_ERRNO(EPERM), SCMP_SYS(seccomp), 0);
        seccomp_rule_add(filter, SCMP_ACT_ERRNO(EPERM), SCMP_SYS(prctl), 1,
                         SCMP_A0(SCMP_CMP_EQ, PR_SET_SECCOMP));
        if (seccomp_load(filter) == 0) decode(report);
    });
    EXPECT_EQ(refused.report, "");
    EXPECT_EQ(WEXITSTATUS(refused.status), 3) << refused.status;
}
