#include "util/SystemLog.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <syslog.h>
#include <unistd.h>

#include <cstring>

namespace {

// Journal and syslog daemons take at least this much in one datagram.
constexpr size_t kMaxText = 8000;

int priority(logging::Flag flag) {
    switch (flag) {
        case logging::Error:
            return LOG_ERR;
        case logging::Warning:
            return LOG_WARNING;
        case logging::Info:
            return LOG_INFO;
        case logging::Debug:
        case logging::Verbose:
            return LOG_DEBUG;
    }
    return LOG_DEBUG;
}

std::string journalFields(const LogMessage& message, const std::string& text) {
    std::string fields = "PRIORITY=" + std::to_string(priority(message.flag));
    fields.append("\nSYSLOG_IDENTIFIER=trovast\nCODE_FILE=").append(message.fileName);
    fields.append("\nCODE_LINE=").append(std::to_string(message.lineNumber));
    fields.append("\nMESSAGE=").append(text).append("\n");
    return fields;
}

std::string syslogLine(const LogMessage& message, const std::string& text) {
    return "<" + std::to_string(LOG_USER | priority(message.flag)) + ">trovast[" +
           std::to_string(getpid()) + "]: " + text;
}

}  // namespace

SystemLog::SystemLog() : SystemLog(Sockets()) {}

SystemLog::SystemLog(const Sockets& sockets) {
    isJournal_ = connectTo(sockets.journal);
    if (!isJournal_) connectTo(sockets.syslog);
}

bool SystemLog::connectTo(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path) return false;
    std::memcpy(address.sun_path, path.data(), path.size());
    socket_.reset(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    if (socket_ &&
        connect(socket_.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0)
        return true;
    socket_.reset();
    return false;
}

void SystemLog::write(const LogMessage& message) {
    if (!socket_) return;
    std::string text = formatter_.formatLogMessage(message);
    if (text.size() > kMaxText) text.resize(kMaxText);
    const std::string datagram =
        isJournal_ ? journalFields(message, text) : syslogLine(message, text);
    send(socket_.get(), datagram.data(), datagram.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
}
