#pragma once
#include <string>

#include "util/ProcessFlags.h"

/// The one log. Lines are printf formats that the compiler checks; what is not in the mask is not
/// formatted. A line is one line: control characters in it, line feeds and tabs too, stand as \xNN.
///
///     logError("Failed to stat '%s': %s", path, strerror(errno));
///     logIf(processFlags.debugCache, Info, "...", ...);
///
/// Threads: any. What a sink or the listener logs while it takes a line is dropped.
/// Fails:   never: a sink that cannot write says so on standard error once, and the program goes
/// on.
namespace logging {

enum Flag : unsigned { Error = 1, Warning = 2, Info = 4, Debug = 8, Verbose = 16 };

/// The mask of flags that are written; the setting logLevel. 7 at first.
unsigned level();
void setLevel(unsigned mask);
inline bool enabled(Flag flag) {
    return (level() & flag) != 0;
}

__attribute__((format(printf, 4, 5))) void write(Flag flag, const char* file, int line,
                                                 const char* format, ...);

/// Sinks. While none is open, lines of level error and warning go to standard error.
struct Options {
    std::string folder;          // of the daily files; made 0700 where missing; empty: no file
    bool systemLog = true;       // the journal or syslog
    bool standardError = false;  // errors and warnings also there
};
/// Replaces the sinks that are open.
void open(const Options& options);
void close();

/// The queue label in the file's fourth column: set by each queue for its threads, "main" for the
/// others. Kept as a pointer: it must live as long as the thread.
void setThreadLabel(const char* label);
const char* threadLabel();

/// Called with each written line in the file's five-column form, on the writing thread, under the
/// log's lock, whether sinks are open or not. One at most; null takes it off.
using Listener = void (*)(Flag, const std::string& line, void* context);
void setListener(Listener listener, void* context);

}  // namespace logging

#define logAt(flag, ...)                                                           \
    (::logging::enabled(::logging::flag)                                           \
         ? ::logging::write(::logging::flag, __FILE_NAME__, __LINE__, __VA_ARGS__) \
         : void())
#define logError(...) logAt(Error, __VA_ARGS__)
#define logWarning(...) logAt(Warning, __VA_ARGS__)
#define logInfo(...) logAt(Info, __VA_ARGS__)
#define logIf(condition, flag, ...) ((condition) ? logAt(flag, __VA_ARGS__) : void())
