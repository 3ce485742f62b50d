#include "platform/linux/decoder/DecoderProcess.h"

#include <fcntl.h>
#include <gtest/gtest.h>

#include <cstdlib>

#include "util/FileIO.h"

using namespace std::chrono_literals;
using End = DecoderProcess::End;

TEST(DecoderProcess, EndsWhatTakesTooLongSaysTooMuchOrDies) {
    const struct {
        std::vector<std::string> arguments;
        End end;
    } cases[] = {
        {{"/bin/cat"}, End::complete},
        {{"/bin/sleep", "60"}, End::tookTooLong},
        {{"/usr/bin/yes"}, End::saidTooMuch},
        {{"/bin/false"}, End::died},
        {{"/bin/sh", "-c", "kill -SEGV $$"}, End::died},
        {{"/bin/sh", "-c", "kill -XCPU $$"}, End::usedUp},
        {{"/bin/sh", "-c", "exec >&-; sleep 60"}, End::tookTooLong},
        {{"/nonexistent"}, End::notStarted},
    };
    DecoderProcess process;
    for (const auto& each : cases) {
        const auto began = std::chrono::steady_clock::now();
        const auto outcome = process.run(
            {.arguments = each.arguments, .input = "hello", .limit = 400ms, .mostBytes = 100'000},
            [] { return false; });
        EXPECT_EQ(outcome.end, each.end) << each.arguments.back();
        if (each.end == End::complete) {
            EXPECT_EQ(outcome.output, "hello");
        }
        EXPECT_LT(std::chrono::steady_clock::now() - began, 5s) << each.arguments.back();
    }
    const auto cancelled = process.run({.arguments = {"/bin/sleep", "60"}}, [] { return true; });
    EXPECT_EQ(cancelled.end, End::cancelled);
}

TEST(DecoderProcess, GivesNoHandleAndLittleOfTheEnvironment) {
    const FileHandle inherited(open("/dev/null", O_RDONLY));  // without O_CLOEXEC
    ASSERT_TRUE(inherited);
    constexpr const char* kUnwanted[] = {"LD_AUDIT", "QT_PLUGIN_PATH", "QT_QPA_PLATFORMTHEME",
                                         "XLC_ALL"};
    for (const char* name : kUnwanted) setenv(name, "/nowhere", 1);
    setenv("LC_TIME", "C", 1);
    const char* const script =
        "env | cut -d= -f1 | grep -v '^PWD$\\|^_$\\|^SHLVL$\\|^OLDPWD$' | "
        "grep -v '^LC_\\|^LANG\\|^TZ$\\|^PATH$\\|^HOME$\\|^XDG_\\(DATA\\|CACHE\\)_'; "
        "for handle in /proc/$$/fd/*; do [ -e $handle ] && echo ${handle##*/}; done; "
        "echo $LC_TIME";
    DecoderProcess process;
    const auto outcome = process.run({.arguments = {"/bin/sh", "-c", script}, .mostBytes = 10'000},
                                     [] { return false; });
    for (const char* name : kUnwanted) unsetenv(name);
    unsetenv("LC_TIME");
    EXPECT_EQ(outcome.end, End::complete);
    EXPECT_EQ(outcome.output, "0\n1\n2\nC\n");
}
