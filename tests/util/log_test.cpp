#include "util/log.h"

#include <errno.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include <atomic>
#include <cstring>

#include "util/DailyLogFile.h"
#include "util/SystemLog.h"
#include "util/TestSupport.h"

namespace {

using namespace std::chrono_literals;

std::chrono::system_clock::time_point localTime(int month, int day, int hour = 12) {
    std::tm parts{};
    parts.tm_year = 124;
    parts.tm_mon = month - 1;
    parts.tm_mday = day;
    parts.tm_hour = hour;
    parts.tm_isdst = -1;
    return std::chrono::system_clock::from_time_t(std::mktime(&parts));
}

LogMessage message(std::string_view text, std::chrono::system_clock::time_point time) {
    return {time, logging::Info, "Cache.cpp", 12, "scanQ", 4713, text};
}

std::vector<std::string> columns(const std::string& line) {
    std::vector<std::string> out(1);
    for (const char c : line) {
        if (c == '\t')
            out.emplace_back();
        else
            out.back() += c;
    }
    return out;
}

mode_t modeOf(const FileURL& url) {
    struct stat info {};
    lstat(url.c_str(), &info);
    return info.st_mode & 07777;
}

size_t linesOf(const FileURL& url) {
    const std::string text = contentOf(url);
    return static_cast<size_t>(std::count(text.begin(), text.end(), '\n'));
}

std::atomic<bool> room = true;
bool hasRoom(const FileURL&) {
    return room;
}

}  // namespace

TEST(LogFormatter, AFileLineHasFiveColumns) {
    const auto line = columns(LogFormatterMultiLine().formatLogMessage(
        message("Scanned 3 folders", localTime(2, 29, 9) + 500ms)));
    ASSERT_EQ(line.size(), 5u);
    EXPECT_EQ(line[0], "2024-02-29 09:00:00.50000") << "half a second";
    EXPECT_EQ(line[1], std::string(program_invocation_short_name) + ":" + std::to_string(getpid()));
    EXPECT_EQ(line[2], "Cache.cpp:12");
    EXPECT_EQ(line[3], "scanQ[4713]");
    EXPECT_EQ(line[4], "INF Scanned 3 folders");
}

TEST(LogFormatter, DecimalsAreCutToFive) {
    const auto stamp = [](auto fraction) {
        return LogFormatter().formatLogMessage(message("x", localTime(1, 1) + fraction));
    };
    EXPECT_EQ(stamp(0ns), "2024-01-01 12:00:00.00000 x");
    EXPECT_EQ(stamp(12345ns), "2024-01-01 12:00:00.00001 x");
    EXPECT_EQ(stamp(999999999ns), "2024-01-01 12:00:00.99999 x");
    EXPECT_EQ(stamp(7ms), "2024-01-01 12:00:00.00700 x");
}

TEST(LogFormatter, TagsTellTheFlag) {
    const logging::Flag flags[] = {logging::Error, logging::Warning, logging::Info, logging::Debug,
                                   logging::Verbose};
    std::string tags;
    for (const auto flag : flags) tags += logTag(flag);
    EXPECT_EQ(tags, "ERRWRNINFDBGTRC");
}

TEST(DailyLogFile, FourteenFilesStayOverRestarts) {
    const TemporaryFolder folder;
    const FileURL logs = folder.file("state").appending("trovast");
    const LogFormatterMultiLine formatter;
    for (int day = 1; day <= 20; day++)  // each a run of its own
        DailyLogFile(logs).write(message("run", localTime(3, day)), formatter);
    setContent(logs.appending("trovast_notes.log"), "mine");
    DailyLogFile file(logs);
    for (int day = 21; day <= 25; day++) file.write(message("roll", localTime(3, day)), formatter);
    std::string kept;
    for (int day = 1; day <= 25; day++) {
        char name[32];
        std::snprintf(name, sizeof name, "trovast_2024-03-%02d.log", day);
        kept += access(logs.appending(name).c_str(), F_OK) == 0 ? '1' : '0';
    }
    EXPECT_EQ(kept, std::string(11, '0') + std::string(14, '1'));
    EXPECT_EQ(contentOf(logs.appending("trovast_notes.log")), "mine");
    EXPECT_EQ(modeOf(logs), 0700u);
    EXPECT_EQ(modeOf(logs.appending("trovast_2024-03-25.log")), 0600u);
}

TEST(DailyLogFile, RollsAtMidnightAndAppends) {
    const TemporaryFolder folder;
    const LogFormatterMultiLine formatter;
    DailyLogFile file(folder.url());
    file.write(message("a", localTime(3, 1, 23) + 3599s), formatter);
    file.write(message("b", localTime(3, 2, 0)), formatter);
    file.write(message("c", localTime(3, 1, 23)), formatter);  // the user set the clock back
    EXPECT_EQ(linesOf(folder.file("trovast_2024-03-01.log")), 2u);
    EXPECT_EQ(linesOf(folder.file("trovast_2024-03-02.log")), 1u);
}

TEST(DailyLogFile, TodaysFileIsNotPrunedForThoseOfAWrongClock) {
    const TemporaryFolder folder;
    for (int day = 10; day < 30; day++)
        setContent(folder.file("trovast_2031-01-" + std::to_string(day) + ".log"), "");
    DailyLogFile(folder.url()).write(message("x", localTime(3, 1)), LogFormatterMultiLine());
    EXPECT_EQ(linesOf(folder.file("trovast_2024-03-01.log")), 1u);
}

TEST(DailyLogFile, StopsOnAFullDiskAndGoesOn) {
    const TemporaryFolder folder;
    const FileURL url = folder.file("trovast_2024-03-01.log");
    const LogFormatterMultiLine formatter;
    DailyLogFile file(folder.url(), hasRoom);
    const auto write = [&](int lines) {
        for (int i = 0; i < lines; i++) file.write(message("line", localTime(3, 1)), formatter);
    };
    room = true;
    write(10);
    room = false;
    write(1000);
    const size_t stopped = linesOf(url);
    EXPECT_LE(stopped, 10u + DailyLogFile::kLinesBetweenChecks + 1);
    EXPECT_NE(contentOf(url).find("WRN Log file stops: the disk is nearly full\n"),
              std::string::npos);
    room = true;
    write(2 * DailyLogFile::kLinesBetweenChecks);
    EXPECT_NE(contentOf(url).find("WRN Log file goes on; lines left out: "), std::string::npos);
    EXPECT_GT(linesOf(url), stopped + DailyLogFile::kLinesBetweenChecks);
}

TEST(DailyLogFile, AnUnwritableFolderIsToldOnce) {
    const TemporaryFolder folder;
    setContent(folder.file("file"), "");
    testing::internal::CaptureStderr();
    DailyLogFile file(folder.file("file").appending("logs"));
    for (int i = 0; i < 500; i++) file.write(message("x", localTime(3, 1)), {});
    const std::string told = testing::internal::GetCapturedStderr();
    EXPECT_EQ(std::count(told.begin(), told.end(), '\n'), 1) << told;
    EXPECT_NE(told.find("Not a directory"), std::string::npos) << told;
}

TEST(DailyLogFile, WritesThroughNoLinkAndWaitsForNoPipe) {
    const TemporaryFolder folder;
    setContent(folder.file("victim"), "");
    ASSERT_EQ(symlink("victim", folder.file("trovast_2024-03-01.log").c_str()), 0);
    ASSERT_EQ(mkfifo(folder.file("trovast_2024-03-02.log").c_str(), 0600), 0);
    testing::internal::CaptureStderr();
    DailyLogFile file(folder.url());
    for (int day = 1; day <= 3; day++) file.write(message("x", localTime(3, day)), {});
    EXPECT_NE(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(linesOf(folder.file("trovast_2024-03-03.log")), 1u);
    EXPECT_EQ(contentOf(folder.file("victim")), "");
}

TEST(SystemLog, SendsOneDatagramALine) {
    const TemporaryFolder folder;
    const auto listenAt = [](const FileURL& url) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::strcpy(address.sun_path, url.c_str());
        FileHandle handle(socket(AF_UNIX, SOCK_DGRAM, 0));
        EXPECT_EQ(bind(handle.get(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
        return handle;
    };
    const auto received = [](const FileHandle& handle) {
        char bytes[10'000];
        const ssize_t length = recv(handle.get(), bytes, sizeof bytes, MSG_DONTWAIT);
        return std::string(bytes, static_cast<size_t>(std::max<ssize_t>(length, 0)));
    };
    const SystemLog::Sockets sockets{folder.file("j").path(), folder.file("s").path()};
    SystemLog(sockets).write(message("nobody listens", localTime(3, 1)));
    const FileHandle syslog = listenAt(folder.file("s"));
    SystemLog(sockets).write(message("hello", localTime(3, 1)));
    EXPECT_EQ(received(syslog),
              "<14>trovast[" + std::to_string(getpid()) + "]: 2024-03-01 12:00:00.00000 hello");
    const FileHandle journal = listenAt(folder.file("j"));
    SystemLog log(sockets);
    log.write(message("hello", localTime(3, 1)));
    EXPECT_EQ(received(journal),
              "PRIORITY=6\nSYSLOG_IDENTIFIER=trovast\nCODE_FILE=Cache.cpp\nCODE_LINE=12\n"
              "MESSAGE=2024-03-01 12:00:00.00000 hello\n");
    const std::string large(100'000, 'x');
    for (int i = 0; i < 1000; i++) log.write(message(large, localTime(3, 1)));  // never blocks
    EXPECT_EQ(received(syslog), "");
}

TEST(Log, WritesWhatIsInTheMaskAsOneLine) {
    const LogLines log;
    int evaluated = 0;
    const auto count = [&] { return ++evaluated; };
    logIf(true, Debug, "hidden %d", count());
    logError("a\tb\n%s", "c\x1b");
    logging::setLevel(logging::Error);
    logWarning("hidden %d", count());
    logging::setLevel(31);
    logIf(true, Debug, "seen %d", count());
    logIf(false, Error, "hidden %d", count());
    logging::setLevel(7);
    EXPECT_EQ(evaluated, 1) << "what is not written is not formatted";
    ASSERT_EQ(log.lines().size(), 2u);
    const auto line = columns(log.lines()[0]);
    ASSERT_EQ(line.size(), 5u);
    EXPECT_EQ(line[2].substr(0, 13), "log_test.cpp:");
    EXPECT_EQ(line[3], "main[" + std::to_string(gettid()) + "]");
    EXPECT_EQ(line[4], "ERR a\\x09b\\x0Ac\\x1B");
    EXPECT_EQ(columns(log.lines()[1])[4], "DBG seen 1");
}

TEST(Log, LongLinesStayWhole) {
    const LogLines log;
    for (const size_t length : {510u, 511u, 512u, 513u, 100'000u})
        logInfo("%s", std::string(length, 'y').c_str());
    size_t i = 0;
    for (const size_t length : {510u, 511u, 512u, 513u, 100'000u})
        EXPECT_EQ(columns(log.lines()[i++])[4].size(), length + 4);
}

TEST(Log, AListenerThatLogsDoesNotHang) {
    logging::open({.folder = {}, .systemLog = false});
    int lines = 0;
    logging::setListener(
        [](logging::Flag, const std::string&, void* count) {
            ++*static_cast<int*>(count);
            logError("again");
        },
        &lines);
    logError("once");
    logging::setListener(nullptr, nullptr);
    logging::close();
    EXPECT_EQ(lines, 1);
}

TEST(Log, ErrorsGoToStandardErrorWhileNothingIsOpen) {
    const TemporaryFolder folder;
    testing::internal::CaptureStderr();
    logInfo("not this");
    logError("before %d", 1);
    logging::open({.folder = folder.url().path(), .systemLog = false});
    logError("to the file");
    logging::close();
    logWarning("after");
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "trovast: ERR before 1\ntrovast: WRN after\n");
    const FileURL url = folder.file("trovast_" + logDay(std::chrono::system_clock::now()) + ".log");
    EXPECT_NE(contentOf(url).find("\tERR to the file\n"), std::string::npos);
}

TEST(Log, LinesOfManyThreadsStayWhole) {
    const TemporaryFolder folder;
    logging::open({.folder = folder.url().path(), .systemLog = false});
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; t++)
        threads.emplace_back([] {
            for (int i = 0; i < 250; i++) logInfo("%s", std::string(200, 'z').c_str());
        });
    for (auto& thread : threads) thread.join();
    logging::close();
    std::stringstream text(
        contentOf(folder.file("trovast_" + logDay(std::chrono::system_clock::now()) + ".log")));
    int lines = 0;
    for (std::string line; std::getline(text, line); lines++)
        EXPECT_EQ(columns(line).back(), "INF " + std::string(200, 'z'));
    EXPECT_EQ(lines, 1000);
}
