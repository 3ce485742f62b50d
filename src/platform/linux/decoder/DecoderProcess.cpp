#include "platform/linux/decoder/DecoderProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <iterator>
#include <string_view>

#include "util/FileIO.h"
#include "util/log.h"

extern char** environ;

using namespace std::chrono;

namespace {

constexpr int kSlice = 30;  // milliseconds between two looks at whether it is still wanted

bool makePipe(FileHandle& reader, FileHandle& writer) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) return false;
    reader.reset(ends[0]);
    writer.reset(ends[1]);
    return true;
}

/// What the program may know of its user: language, time zone and where fonts are. Nothing of the
/// desktop, and nothing by which other code would be loaded.
std::vector<char*> environment() {
    constexpr std::string_view kNames[] = {
        "PATH", "HOME",          "LANG",          "LANGUAGE",
        "TZ",   "XDG_DATA_HOME", "XDG_DATA_DIRS", "XDG_CACHE_HOME"};
    std::vector<char*> kept;
    for (char** entry = environ; entry && *entry; entry++) {
        const std::string_view text = *entry;
        const std::string_view name = text.substr(0, text.find('='));
        if (name.starts_with("LC_") ||
            std::find(std::begin(kNames), std::end(kNames), name) != std::end(kNames))
            kept.push_back(*entry);
    }
    kept.push_back(nullptr);
    return kept;
}

/// 0: it could not be started.
pid_t spawn(const std::vector<std::string>& arguments, int input, int output) {
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t none, all;
    sigemptyset(&none);
    sigfillset(&all);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setsigdefault(&attributes, &all);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    std::vector<char*> words;
    for (const std::string& word : arguments) words.push_back(const_cast<char*>(word.c_str()));
    words.push_back(nullptr);
    pid_t process = 0;
    const int code =
        posix_spawn(&process, words[0], &actions, &attributes, words.data(), environment().data());
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    if (code == 0) return process;
    logError("Cannot start %s: %s", words[0], std::strerror(code));
    return 0;
}

/// A reader that has gone is no reason for a signal.
void writeQuietly(int handle, const std::string& bytes) {
    sigset_t pipe, before;
    sigemptyset(&pipe);
    sigaddset(&pipe, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &pipe, &before);
    if (!writeAll(handle, bytes)) {
        const timespec none{};
        sigtimedwait(&pipe, nullptr, &none);
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

}  // namespace

DecoderProcess::Outcome DecoderProcess::run(const Run& run, IsCancelled isCancelled) {
    reap();
    FileHandle requestReader, requestWriter, answerReader, answerWriter;
    if (!makePipe(requestReader, requestWriter) || !makePipe(answerReader, answerWriter)) return {};
    const pid_t process = spawn(run.arguments, requestReader.get(), answerWriter.get());
    if (process == 0) return {};
    requestReader.reset();
    answerWriter.reset();
    writeQuietly(requestWriter.get(), run.input);  // shorter than what a pipe holds
    requestWriter.reset();
    Outcome outcome;
    outcome.end = end(process, read(answerReader.get(), run, isCancelled, outcome.output));
    return outcome;
}

DecoderProcess::End DecoderProcess::read(int from, const Run& run, IsCancelled isCancelled,
                                         std::string& output) const {
    const auto due = steady_clock::now() + run.limit;
    std::vector<char> buffer(256 * 1024);
    for (;;) {
        if (isCancelled()) return End::cancelled;
        const auto left = duration_cast<milliseconds>(due - steady_clock::now()).count();
        if (left <= 0) return End::tookTooLong;
        pollfd waiting{from, POLLIN, 0};
        const int ready = poll(&waiting, 1, static_cast<int>(std::min<long>(left, kSlice)));
        if (ready < 0 && errno != EINTR) return End::died;
        if (ready <= 0) continue;
        const ssize_t count = ::read(from, buffer.data(), buffer.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return End::died;
        if (count == 0) return End::complete;
        output.append(buffer.data(), static_cast<size_t>(count));
        if (output.size() > run.mostBytes) return End::saidTooMuch;
    }
}

DecoderProcess::End DecoderProcess::end(pid_t process, End so) {
    if (so != End::complete) kill(process, SIGKILL);
    for (int tries = 0; tries < 100; tries++) {
        int status = 0;
        const pid_t gone = waitpid(process, &status, WNOHANG);
        if (gone < 0 && errno == EINTR) continue;
        if (gone != 0) {
            if (so != End::complete) return so;
            if (WIFSIGNALED(status) && WTERMSIG(status) == SIGXCPU) return End::usedUp;
            return gone > 0 && WIFEXITED(status) && WEXITSTATUS(status) == 0 ? so : End::died;
        }
        const timespec moment{0, 2'000'000};
        nanosleep(&moment, nullptr);
    }
    kill(process, SIGKILL);
    left_.push_back(process);
    return so == End::complete ? End::tookTooLong : so;
}

void DecoderProcess::reap() {
    std::erase_if(left_, [](pid_t process) { return waitpid(process, nullptr, WNOHANG) != 0; });
}
