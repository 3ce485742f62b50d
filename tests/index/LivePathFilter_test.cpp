#include "index/LivePathFilter.h"

#include <random>

#include "util/TestSupport.h"
#include "util/queues/OperationQueue.h"

namespace {

using Rule = LivePathFilter::Rule;
using Texts = std::vector<std::string>;

class LivePathFilterTest : public testing::Test {
  protected:
    /// Runs on another thread, while this one serves the main queue.
    void onQueue(const std::function<void()>& block) {
        std::atomic<bool> over = false;
        queue_.async([&] {
            block();
            over = true;
        });
        EXPECT_TRUE(comesTrue([&] {
            world_.run();
            return over.load();
        }));
    }
    /// "+/a": included, "-/a": excluded.
    void add(const Texts& steps) {
        onQueue([&] {
            for (const std::string& step : steps)
                filter_.addPath(FileURL(step.substr(1)),
                                step[0] == '+' ? Rule::included : Rule::excluded);
        });
    }
    bool hides(const std::string& path) const { return filter_.isPathExcluded(FileURL(path)); }

    ManualWorld world_;
    LivePathFilter filter_;
    SerialQueue queue_{"modeQ", Qos::userInitiated};
};

TEST_F(LivePathFilterTest, TheLongestRuleDecides) {
    struct Case {
        Texts steps, active;
        bool exclusive;
        Texts hidden, shown;
    };
    const Case cases[] = {
        {{}, {}, false, {}, {"/", "/a", "/a/x"}},
        {{"-/a"}, {"[-] /a/"}, false, {"/a", "/a/x", "/a/x/y"}, {"/", "/ab", "/b", "/A"}},
        {{"+/a"}, {"[+] /a/"}, true, {"/b", "/", "/ab"}, {"/a", "/a/x"}},
        {{"+/a", "-/a/b"}, {"[+] /a/", "[-] /a/b/"}, true, {"/a/b/x", "/a/b"}, {"/a/c", "/a/bc"}},
        {{"-/a", "+/a/b", "-/a/b/c"},
         {"[-] /a/", "[+] /a/b/", "[-] /a/b/c/"},
         true,
         {"/a", "/a/x", "/a/b/c", "/a/b/c/d", "/z"},
         {"/a/b", "/a/b/x"}},
        // Includes do not stand inside each other, nor excludes outside of what is included.
        {{"+/a", "+/a/b"}, {"[+] /a/b/"}, true, {"/a/c"}, {"/a/b"}},
        {{"+/a/b", "+/c", "+/a"}, {"[+] /a/", "[+] /c/"}, true, {"/b"}, {"/a/c", "/a/b"}},
        {{"+/a/b", "+/a", "-/a"}, {}, false, {}, {"/b", "/a/b"}},
        {{"-/x", "-/a/y", "-/", "+/a"}, {"[+] /a/", "[-] /a/y/"}, true, {"/x", "/a/y"}, {"/a/z"}},
        {{"+/a", "+/b"}, {"[+] /a/", "[+] /b/"}, true, {"/c"}, {"/a", "/b"}},
        {{"-/a", "-/b"}, {"[-] /a/", "[-] /b/"}, false, {"/a", "/b"}, {"/c"}},
        // Twice is once, and the opposite takes a rule away.
        {{"-/a", "-/a"}, {"[-] /a/"}, false, {"/a"}, {"/b"}},
        {{"+/a", "+/a"}, {"[+] /a/"}, true, {"/b"}, {"/a"}},
        {{"-/a", "+/a"}, {}, false, {}, {"/a", "/b"}},
        {{"+/a", "-/a"}, {}, false, {}, {"/a", "/b"}},
        {{"+/a", "-/b", "+/b"}, {"[+] /a/"}, true, {"/b", "/c"}, {"/a"}},
        // Bytes, in their order.
        {{"-/\xFF", "-/\xEF\xBF\xBD", "-/a b", "-/a"},
         {"[-] /a b/", "[-] /a/", "[-] /\xEF\xBF\xBD/", "[-] /\xFF/"},
         false,
         {"/\xFF/x", "/a b"},
         {"/\xFE"}},
    };
    for (const Case& c : cases) {
        add(c.steps);
        const std::string all = testing::PrintToString(c.steps);
        EXPECT_EQ(filter_.activePaths(), c.active) << all;
        EXPECT_EQ(filter_.exclusive(), c.exclusive) << all;
        EXPECT_EQ(filter_.hasRules(), !c.active.empty()) << all;
        for (const std::string& path : c.hidden) EXPECT_TRUE(hides(path)) << path << " " << all;
        for (const std::string& path : c.shown) EXPECT_FALSE(hides(path)) << path << " " << all;
        onQueue([this] { filter_.reset(); });
        EXPECT_FALSE(filter_.hasRules() || filter_.exclusive() || hides("/q"));
        EXPECT_TRUE(filter_.activePaths().empty());
    }
}

TEST_F(LivePathFilterTest, KeepsTheRootApartFromWhatIsBelowIt) {
    add({"-/"});
    EXPECT_TRUE(hides("/"));
    EXPECT_FALSE(hides("/a"));
    onQueue([this] { filter_.reset(); });
    add({"+/"});
    EXPECT_TRUE(hides("/a"));
}

TEST_F(LivePathFilterTest, KeepsOnePathMoreThanItsLimit) {
    const LogLines log;
    const char* warning = "Maximum number of paths for live path filter exceeded";
    Texts steps;
    for (int i = 0; i < 1025; i++) steps.push_back("-/" + std::to_string(i));
    add(steps);
    EXPECT_EQ(log.count(warning), 0u);
    EXPECT_TRUE(hides("/1024"));
    add({"-/1025", "+/7"});
    EXPECT_EQ(log.count(warning), 2u);
    EXPECT_FALSE(hides("/1025"));
    EXPECT_TRUE(hides("/7"));
}

TEST_F(LivePathFilterTest, TakesPathsOfAnyLength) {
    const std::string deep = "/" + std::string(4000, 'd');
    add({"-" + deep});
    EXPECT_TRUE(hides(deep));
    EXPECT_TRUE(hides(deep + "/x"));
    EXPECT_FALSE(hides(deep + "x"));
}

TEST_F(LivePathFilterTest, TheMainThreadIsToldThatItMustNot) {
    const LogLines log;
    filter_.addPath(FileURL("/a"), Rule::excluded);
    EXPECT_TRUE(hides("/a")) << "it goes on";
    filter_.reset();
    EXPECT_FALSE(hides("/a"));
    EXPECT_EQ(log.count("Must not be called on main thread!"), 2u);
    add({"-/a"});
    EXPECT_EQ(log.lines().size(), 2u);
}

}  // namespace
