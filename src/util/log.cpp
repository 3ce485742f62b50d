#include "util/log.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <cstdarg>
#include <cstdio>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>

#include "util/DailyLogFile.h"
#include "util/LogFormatter.h"
#include "util/Relaxed.h"
#include "util/SystemLog.h"
#include "util/Unicode.h"

namespace logging {
namespace {

struct Sinks {
    std::optional<DailyLogFile> file;
    std::optional<SystemLog> system;
    bool standardError = false;
    const LogFormatterMultiLine formatter = {};
};

/// All there is of the log. Never destroyed: threads may log until the very end.
struct State {
    Relaxed<unsigned> mask = 7;
    std::mutex mutex;
    Sinks* sinks = nullptr;  // owned; null while closed
    Listener listener = nullptr;
    void* context = nullptr;
};
constinit State state;

thread_local const char* label = "main";
thread_local bool writing = false;

__attribute__((format(printf, 1, 0))) std::string formatted(const char* format, va_list arguments) {
    va_list again;
    va_copy(again, arguments);
    char buffer[512] = "";
    const int length = std::vsnprintf(buffer, sizeof buffer, format, arguments);
    std::string text(buffer);
    if (length >= static_cast<int>(sizeof buffer)) {
        text.resize(static_cast<size_t>(length) + 1);
        std::vsnprintf(text.data(), text.size(), format, again);
        text.pop_back();
    }
    va_end(again);
    return text;
}

/// Under the lock.
void deliver(const LogMessage& message) {
    const Sinks* const sinks = state.sinks;
    if (state.listener) {
        const std::string line = sinks ? sinks->formatter.formatLogMessage(message)
                                       : LogFormatterMultiLine().formatLogMessage(message);
        state.listener(message.flag, line, state.context);
    }
    if ((!sinks || sinks->standardError) && (message.flag & (Error | Warning)))
        std::fprintf(stderr, "trovast: %s %.*s\n", logTag(message.flag),
                     static_cast<int>(message.message.size()), message.message.data());
    if (!sinks) return;
    if (state.sinks->system) state.sinks->system->write(message);
    if (state.sinks->file) state.sinks->file->write(message, sinks->formatter);
}

void replaceSinks(std::unique_ptr<Sinks> sinks) {
    const std::lock_guard lock(state.mutex);
    const std::unique_ptr<Sinks> old(std::exchange(state.sinks, sinks.release()));
}

}  // namespace

unsigned level() {
    return state.mask;
}
void setLevel(unsigned mask) {
    state.mask = mask;
}
void setThreadLabel(const char* l) {
    label = l;
}
const char* threadLabel() {
    return label;
}

void write(Flag flag, const char* file, int line, const char* format, ...) {
    if (writing) return;
    writing = true;
    const auto time = std::chrono::system_clock::now();
    va_list arguments;
    va_start(arguments, format);
    const std::string text = logText(formatted(format, arguments));
    va_end(arguments);
    {
        const std::lock_guard lock(state.mutex);
        deliver({time, flag, file, line, label, syscall(SYS_gettid), text});
    }
    writing = false;
}

void open(const Options& options) {
    auto sinks = std::make_unique<Sinks>();
    if (!options.folder.empty()) sinks->file.emplace(FileURL(options.folder));
    if (options.systemLog) sinks->system.emplace();
    sinks->standardError = options.standardError;
    replaceSinks(std::move(sinks));
}

void close() {
    replaceSinks(nullptr);
}

void setListener(Listener listener, void* context) {
    const std::lock_guard lock(state.mutex);
    state.listener = listener;
    state.context = context;
}

}  // namespace logging
