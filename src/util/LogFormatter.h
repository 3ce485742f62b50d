#pragma once
#include <chrono>
#include <string>
#include <string_view>

#include "util/log.h"

/// One message of the log, on its way to the sinks. Borrows its texts.
struct LogMessage {
    std::chrono::system_clock::time_point timestamp;
    logging::Flag flag;
    std::string_view fileName;
    int lineNumber;
    std::string_view queueLabel;
    long threadId;
    std::string_view message;  // one line: control characters are gone
};

/// The line for the system's log: timestamp, blank, message.
class LogFormatter {
  public:
    std::string formatLogMessage(const LogMessage& message) const;
};

/// The line for the log file, without its line feed: five columns with tabs between them, in the
/// user's time zone.
///     2024-05-01 10:00:00.50000 <tab> trovast:4711 <tab> Cache.cpp:12 <tab> scanQ[4713] <tab> ERR
///     text
/// Name and id of the process are those at construction.
class LogFormatterMultiLine {
  public:
    LogFormatterMultiLine();
    std::string formatLogMessage(const LogMessage& message) const;

  private:
    const std::string process_;
};

/// "ERR", "WRN", "INF", "DBG" or "TRC".
const char* logTag(logging::Flag flag);
/// The day of a time in the user's time zone, "2024-05-01".
std::string logDay(std::chrono::system_clock::time_point time);
