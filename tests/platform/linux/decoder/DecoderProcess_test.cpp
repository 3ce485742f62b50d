#include "platform/linux/decoder/DecoderProcess.h"

#include <gtest/gtest.h>

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
        {{"/bin/sh", "-c", "kill -XCPU $$"}, End::tookTooLong},
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
