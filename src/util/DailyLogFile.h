#pragma once
#include <string>

#include "util/FileIO.h"
#include "util/FileURL.h"
#include "util/LogFormatter.h"

/// The log's files: trovast_YYYY-MM-DD.log, one a day in the user's time zone, in a folder of mode
/// 0700, each 0600. The newest fourteen stay, counted over all runs of the program.
/// Written by ourselves: the libraries at hand count only the files of the same run, open them
/// readable by all, and throw where the folder cannot be written.
/// Owner:   the log, under its lock.
/// Fails:   a folder or file that cannot be written is told on standard error once and tried again
///          every hundred lines and each day; meanwhile lines are dropped. When the disk is nearly
///          full the file ends with one line saying so, and goes on when there is room again.
class DailyLogFile {
  public:
    /// Whether the disk of this folder has room for logs: 200 MB and one per cent.
    static bool hasRoom(const FileURL& folder);
    using RoomTest = bool (*)(const FileURL& folder);

    static constexpr int kFilesKept = 14;
    static constexpr int kLinesBetweenChecks = 100;

    explicit DailyLogFile(FileURL folder, RoomTest roomTest = hasRoom);
    void write(const LogMessage& message, const LogFormatterMultiLine& formatter);

  private:
    void open(const std::string& day);
    void prune() const;
    void checkRoom(const LogMessage& cause, const LogFormatterMultiLine& formatter);
    void append(const std::string& line);
    void complain(const Error& error);

    const FileURL folder_;
    const RoomTest hasRoom_;
    FileHandle file_;
    std::string day_;
    std::string name_;
    int linesToCheck_ = 0;
    bool full_ = false;
    bool halfLine_ = false;  // the disk took a part of the last line
    bool complained_ = false;
    unsigned long dropped_ = 0;
};
