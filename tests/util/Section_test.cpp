#include "util/Section.h"

#include <atomic>
#include <type_traits>

#include "util/TestSupport.h"

static_assert(!std::is_default_constructible_v<ReadSection>);
static_assert(!std::is_copy_constructible_v<ReadSection>);
static_assert(!std::is_copy_constructible_v<WriteSection>);
static_assert(std::is_convertible_v<const WriteSection&, const ReadSection&>);
static_assert(!std::is_convertible_v<const ReadSection&, const WriteSection&>);

TEST(Section, AWriterIsAlone) {
    Section section("counter");
    long a = 0, b = 0;  // equal outside write sections
    std::atomic<int> torn = 0;
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; t++)
        threads.emplace_back([&, t] {
            for (int i = 0; i < 2000; i++) {
                if (i % 4 == t)
                    section.write([&](const WriteSection&) {
                        a++;
                        b++;
                    });
                else
                    section.read([&](const ReadSection&) { torn += a != b; });
            }
        });
    for (auto& thread : threads) thread.join();
    EXPECT_EQ(torn, 0);
    EXPECT_EQ(section.read([&](const ReadSection&) { return a; }), 2000);
}

TEST(Section, ReadersAreInsideTogether) {
    Section section("readers");
    std::atomic<int> inside = 0;
    std::atomic<bool> met = true;
    const auto meet = [&] {
        section.read([&](const ReadSection&) {
            inside++;
            if (!comesTrue([&] { return inside == 2; })) met = false;
        });
    };
    std::thread other(meet);
    meet();
    other.join();
    EXPECT_TRUE(met);
}

TEST(Section, OverlappingReadersDoNotKeepAWriterOut) {
    Section section("fair");
    std::atomic<bool> written = false;
    std::atomic<long> entries = 0;
    const auto now = std::chrono::steady_clock::now;
    const auto deadline = now() + std::chrono::seconds(20);
    std::vector<std::thread> readers;
    for (int t = 0; t < 4; t++)
        readers.emplace_back([&] {
            while (!written && now() < deadline)
                section.read([&](const ReadSection&) {
                    // Leaves only when the next one is inside: there is always one. When nobody
                    // else is let in any more it gives up.
                    const long mine = ++entries;
                    const auto patience = now() + std::chrono::milliseconds(300);
                    while (entries == mine && now() < patience) std::this_thread::yield();
                });
        });
    EXPECT_TRUE(comesTrue([&] { return entries > 50; }));
    std::thread writer([&] { section.write([&](const WriteSection&) { written = true; }); });
    for (auto& reader : readers) reader.join();
    EXPECT_TRUE(written) << "all readers had to go home first";
    writer.join();
}

TEST(Section, TryWriteDoesNotWait) {
    Section section("busy");
    bool ran = false;
    const auto attempt = [&] { return section.tryWrite([&](const WriteSection&) { ran = true; }); };
    section.read([&](const ReadSection&) {
        std::thread([&] { EXPECT_FALSE(attempt()); }).join();
        EXPECT_FALSE(attempt()) << "not from inside either";
    });
    EXPECT_FALSE(ran);
    EXPECT_TRUE(attempt());
    EXPECT_TRUE(ran);
    section.write([&](const WriteSection&) {
        EXPECT_TRUE(Section::isThreadInside());
        std::thread([&] {
            EXPECT_FALSE(attempt());
            EXPECT_FALSE(Section::isThreadInside());
        }).join();
    });
    EXPECT_TRUE(attempt()) << "left again";
}

TEST(Section, NestingAgainstTheOrderIsTold) {
    const LogLines log;
    Section index("index", 1), rows("rows", 2);
    const auto nothing = [](const ReadSection&) {};
    index.read([&](const ReadSection&) { rows.write(nothing); });
    EXPECT_EQ(log.lines().size(), 0u);
    rows.read([&](const ReadSection&) { index.read(nothing); });
    EXPECT_EQ(log.count("Section index entered inside section rows"), 1u);
    // A reader that reads again cannot hang behind a waiting writer: it is inside already.
    std::thread writer;
    index.read([&](const ReadSection&) {
        writer = std::thread([&] { index.write(nothing); });
        for (int i = 0; i < 100; i++) index.read(nothing);
    });
    writer.join();
    EXPECT_EQ(log.count("Section index entered inside section index"), 100u);
}

TEST(SectionDeathTest, WritingInsideAReadOfTheSameSectionEndsAtOnce) {
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    Section section("self");
    const auto nothing = [](const WriteSection&) {};
    EXPECT_DEATH(section.read([&](const ReadSection&) { section.write(nothing); }),
                 "Section self entered inside section self");
}

TEST(Section, IsLeftByAnException) {
    Section section("thrown");
    EXPECT_THROW(section.write([](const WriteSection&) { throw std::runtime_error("x"); }),
                 std::runtime_error);
    EXPECT_TRUE(section.tryWrite([](const WriteSection&) {}));
}
