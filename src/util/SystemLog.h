#pragma once
#include <string>

#include "util/FileIO.h"
#include "util/LogFormatter.h"

/// The system's log: systemd's journal where its socket is, else syslog. Each line is one datagram,
/// sent without waiting: with nobody listening or a full socket the line is lost, silently.
/// Formats: the journal's native protocol (systemd.io/JOURNAL_NATIVE_PROTOCOL) in its plain form,
///          and "<priority>name[pid]: text" of RFC 3164 without the time, which the socket adds.
/// Owner:   the log, under its lock.
class SystemLog {
  public:
    struct Sockets {
        std::string journal = "/run/systemd/journal/socket";
        std::string syslog = "/dev/log";
    };
    SystemLog();
    explicit SystemLog(const Sockets& sockets);
    void write(const LogMessage& message);

  private:
    bool connectTo(const std::string& path);

    LogFormatter formatter_;
    FileHandle socket_;
    bool isJournal_ = false;
};
