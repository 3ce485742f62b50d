#include "util/DailyLogFile.h"

#include <dirent.h>
#include <errno.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <vector>

#include "util/Unicode.h"

namespace {

constexpr std::string_view kPrefix = "trovast_";
constexpr std::string_view kSuffix = ".log";
constexpr uint64_t kMinimumFree = 200'000'000;

/// trovast_2024-05-01.log, and nothing else that somebody keeps in the folder.
bool isLogName(std::string_view name) {
    constexpr std::string_view kShape = "dddd-dd-dd";
    if (name.size() != kPrefix.size() + kShape.size() + kSuffix.size()) return false;
    if (!name.starts_with(kPrefix) || !name.ends_with(kSuffix)) return false;
    const std::string_view day = name.substr(kPrefix.size(), kShape.size());
    return std::equal(day.begin(), day.end(), kShape.begin(), [](char c, char shape) {
        return shape == 'd' ? c >= '0' && c <= '9' : c == shape;
    });
}

}  // namespace

bool DailyLogFile::hasRoom(const FileURL& folder) {
    struct statvfs info;
    if (statvfs(folder.c_str(), &info) != 0) return true;  // the write will tell
    const uint64_t free = uint64_t{info.f_bavail} * info.f_frsize;
    return free >= kMinimumFree && info.f_bavail >= info.f_blocks / 100;
}

DailyLogFile::DailyLogFile(FileURL folder, RoomTest roomTest)
    : folder_(std::move(folder)), hasRoom_(roomTest) {}

void DailyLogFile::write(const LogMessage& message, const LogFormatterMultiLine& formatter) {
    const std::string day = logDay(message.timestamp);
    const bool rolls = day != day_;
    if (rolls || --linesToCheck_ <= 0) {
        linesToCheck_ = kLinesBetweenChecks;
        if (rolls || !file_) open(day);
        checkRoom(message, formatter);
    }
    if (full_ || !file_) {
        dropped_++;
        return;
    }
    append(formatter.formatLogMessage(message));
}

void DailyLogFile::open(const std::string& day) {
    day_ = day;
    halfLine_ = false;
    file_.reset();
    if (const auto made = makePrivateFolder(folder_); !made) return complain(made.error());
    name_ = std::string(kPrefix) + day + std::string(kSuffix);
    const FileURL url = folder_.appending(name_);
    file_.reset(::open(
        url.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC,
        0600));
    struct stat info;
    if (!file_ || fstat(file_.get(), &info) != 0 || !S_ISREG(info.st_mode)) {
        const int code = file_ ? EINVAL : errno;
        file_.reset();
        return complain(posixError("Failed to open '" + url.path() + "'", code));
    }
    if ((info.st_mode & 077) && info.st_uid == geteuid()) fchmod(file_.get(), 0600);
    prune();
}

void DailyLogFile::prune() const {
    const std::unique_ptr<DIR, int (*)(DIR*)> list(opendir(folder_.c_str()), closedir);
    if (!list) return;
    std::vector<std::string> others;
    while (const dirent* entry = readdir(list.get()))
        if (isLogName(entry->d_name) && entry->d_name != name_) others.emplace_back(entry->d_name);
    constexpr size_t kOthersKept = kFilesKept - 1;
    if (others.size() <= kOthersKept) return;
    std::sort(others.begin(), others.end());
    others.resize(others.size() - kOthersKept);
    for (const std::string& old : others) unlinkat(dirfd(list.get()), old.c_str(), 0);
}

void DailyLogFile::checkRoom(const LogMessage& cause, const LogFormatterMultiLine& formatter) {
    if (!file_) return;
    const bool full = !hasRoom_(folder_);
    if (full == full_) return;
    full_ = full;
    const std::string text = full ? "Log file stops: the disk is nearly full"
                                  : "Log file goes on; lines left out: " + std::to_string(dropped_);
    dropped_ = 0;
    LogMessage message = cause;
    message.flag = logging::Warning;
    message.message = text;
    append(formatter.formatLogMessage(message));
}

void DailyLogFile::append(const std::string& line) {
    const std::string text = (halfLine_ ? "\n" : "") + line + "\n";
    size_t length = 0;
    while (length < text.size()) {
        const ssize_t got = ::write(file_.get(), text.data() + length, text.size() - length);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) break;
        length += static_cast<size_t>(got);
    }
    if (length == text.size()) {
        halfLine_ = false;
        return;
    }
    if (length > 0) halfLine_ = true;
    dropped_++;
    complain(posixError("Failed to write '" + folder_.appending(name_).path() + "'", errno));
}

void DailyLogFile::complain(const Error& error) {
    if (complained_) return;
    complained_ = true;
    std::fprintf(stderr, "trovast: %s: %s\n", logText(error.description).c_str(),
                 error.failureReason.c_str());
}
