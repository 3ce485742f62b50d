#include "util/LogFormatter.h"

#include <errno.h>
#include <unistd.h>

#include <cstdio>
#include <ctime>

namespace {

std::tm localTime(std::chrono::system_clock::time_point time) {
    const std::time_t seconds =
        std::chrono::floor<std::chrono::seconds>(time).time_since_epoch() / std::chrono::seconds(1);
    std::tm parts{};
    localtime_r(&seconds, &parts);
    return parts;
}

std::string timestamp(std::chrono::system_clock::time_point time) {
    const std::tm parts = localTime(time);
    const auto fraction = time - std::chrono::floor<std::chrono::seconds>(time);
    const long decimals = static_cast<long>(std::chrono::nanoseconds(fraction).count() / 10000);
    char text[96];
    std::snprintf(text, sizeof text, "%04ld-%02ld-%02ld %02ld:%02ld:%02ld.%05ld",
                  parts.tm_year + 1900L, parts.tm_mon + 1L, long{parts.tm_mday},
                  long{parts.tm_hour}, long{parts.tm_min}, long{parts.tm_sec}, decimals);
    return text;
}

}  // namespace

const char* logTag(logging::Flag flag) {
    switch (flag) {
        case logging::Error:
            return "ERR";
        case logging::Warning:
            return "WRN";
        case logging::Info:
            return "INF";
        case logging::Debug:
            return "DBG";
        case logging::Verbose:
            return "TRC";
    }
    return "";
}

std::string logDay(std::chrono::system_clock::time_point time) {
    return timestamp(time).substr(0, sizeof "2024-05-01" - 1);
}

std::string LogFormatter::formatLogMessage(const LogMessage& message) const {
    return timestamp(message.timestamp).append(" ").append(message.message);
}

LogFormatterMultiLine::LogFormatterMultiLine()
    : process_(std::string(program_invocation_short_name) + ":" + std::to_string(getpid())) {}

std::string LogFormatterMultiLine::formatLogMessage(const LogMessage& message) const {
    std::string line = timestamp(message.timestamp);
    line.append("\t").append(process_);
    line.append("\t").append(message.fileName).append(":");
    line.append(std::to_string(message.lineNumber));
    line.append("\t").append(message.queueLabel).append("[");
    line.append(std::to_string(message.threadId)).append("]");
    line.append("\t").append(logTag(message.flag)).append(" ").append(message.message);
    return line;
}
