#include "util/settings/SettingsStore.h"

#include <atomic>
#include <nlohmann/json.hpp>

#include "util/ProcessFlags.h"
#include "util/TestSupport.h"
#include "util/settings/OVUserDefaults.h"
#include "util/settings/ProcessFlagsMirror.h"
#include "util/settings/SettingsFile.h"

namespace {

using nlohmann::json;

json admitted(const char* key, json value) {
    const SettingsValue out =
        admitSetting(key, std::make_shared<const json>(std::move(value))).value;
    return out ? *out : json();
}

std::unique_ptr<SettingsFile> fileIn(const TemporaryFolder& folder) {
    return std::make_unique<SettingsFile>(folder.file("settings.json"));
}

json stored(const TemporaryFolder& folder) {
    return json::parse(contentOf(folder.file("settings.json")), nullptr, false);
}

}  // namespace

TEST(SettingsGate, EachKeyHasItsTypeAndLimits) {
    const struct {
        const char* key;
        json given, taken;
    } rows[] = {
        {"showStatusMenu", false, false},
        {"showStatusMenu", 1, true},
        {"showStatusMenu", 0.0, false},
        {"showStatusMenu", 2, nullptr},
        {"showStatusMenu", "true", nullptr},
        {"maxResultsetSize", 0, 0},
        {"maxResultsetSize", -5, 0},
        {"maxResultsetSize", 250.0, 250},
        {"maxResultsetSize", 2.5, nullptr},
        {"maxResultsetSize", 1e300, 1'000'000},
        {"maxResultsetSize", ~0ull, 1'000'000},
        {"maxResultsetSize", "100", nullptr},
        {"historyMaxSize", 0, 1},
        {"logLevel", 99, 31},
        {"historyIgnoreDiacritics", true, 1},
        {"showMetadata", 7, 7},
        {"showMetadata", ~0ull, std::numeric_limits<int64_t>::max()},
        {"showMetadata", 1e19, nullptr},
        {"fontWeight", -0.4, -0.4},
        {"fontWeight", 40, 1},
        {"history", {"a", "b"}, {"a", "b"}},
        {"history", {"a", 1, "b"}, {"a", "b"}},
        {"history", "a", nullptr},
        {"projects", {{{"name", "x"}}, 7}, {{{"name", "x"}}}},
        {"currentProject", "uuid", "uuid"},
        {"currentProject", {{"uuid", "/srv"}}, {{"uuid", "/srv"}}},
        {"currentProject", 3, nullptr},
        {"searchPanelWidth", 638, 638},
        {"searchPanelWidth", {{"800x600", 500}}, {{"800x600", 500}}},
        {"searchPanelWidth", json::array(), nullptr},
        {"markedItems", json::array(), nullptr},
        {"somethingNew", {1, "x"}, {1, "x"}},
        {"somethingNew", nullptr, nullptr},
    };
    for (const auto& row : rows)
        EXPECT_EQ(admitted(row.key, row.given), row.taken) << row.key << " " << row.given;
    json deep = 1;
    for (int i = 0; i < kMaxSettingsDepth; i++) deep = json::array({std::move(deep)});
    EXPECT_EQ(admitted("somethingNew", deep), nullptr) << "a file with it would be refused";
    EXPECT_EQ(admitted("somethingNew", deep[0]), deep[0]);
}

TEST(SettingsStore, TheStoredValueWinsOverTheDefault) {
    const TemporaryFolder folder;
    const LogLines log;
    setContent(folder.file("settings.json"),
               R"({"maxResultsetSize": 50, "showStatusMenu": "no", "future": {"x": 1}})");
    {
        ManualWorld manual;
        OVUserDefaults settings(fileIn(folder));
        settings.registerDefaults({{"maxResultsetSize", 100}, {"showStatusMenu", true}});
        EXPECT_EQ(settings.integerForKey("maxResultsetSize"), 50);
        EXPECT_TRUE(settings.boolForKey("showStatusMenu")) << "a wrong type counts as absent";
        EXPECT_EQ(log.count("Setting 'showStatusMenu' has a value of the wrong type"), 1u);
        settings.removeObjectForKey("maxResultsetSize");
        EXPECT_EQ(settings.integerForKey("maxResultsetSize"), 100);
        settings.setObject("text", "maxResultsetSize");
        EXPECT_EQ(settings.integerForKey("maxResultsetSize"), 100) << "refused";
        settings.setObject(1e9, "maxResultsetSize");
        EXPECT_EQ(settings.integerForKey("maxResultsetSize"), 1'000'000);
        settings.flush();
        EXPECT_EQ(stored(folder), json({{"maxResultsetSize", 1'000'000},
                                        {"showStatusMenu", "no"},
                                        {"future", {{"x", 1}}}}))
            << "defaults are not stored, what we do not understand is";
        settings.setBool(false, "showStatusMenu");
    }
    EXPECT_EQ(stored(folder)["showStatusMenu"], false) << "the end writes what is left";
}

TEST(SettingsStore, TellsChangesOnTheMainThreadInTheirOrder) {
    ManualWorld manual;
    OVUserDefaults settings;
    settings.registerDefaults({{"historyMaxSize", 100}});
    std::string seen;
    const auto note = [&](const json& old, const json& now) {
        EXPECT_TRUE(MainQueue::isMainThread());
        seen += old.dump() + ">" + now.dump() + " ";
    };
    Subscription size = settings.addObserver("historyMaxSize", note);
    Subscription other = settings.addObserver("other", note);
    settings.setInteger(100, "historyMaxSize");  // as the default: nothing to tell
    std::thread([&] { settings.setInteger(5, "historyMaxSize"); }).join();
    settings.setObject({"x"}, "other");
    settings.setObject({"x"}, "other");
    settings.setInteger(6, "historyMaxSize");
    EXPECT_EQ(settings.integerForKey("historyMaxSize"), 6) << "counts at once";
    EXPECT_EQ(seen, "");
    manual.run();
    EXPECT_EQ(seen, "100>5 null>[\"x\"] 5>6 ");
    seen.clear();
    settings.removeObjectForKey("historyMaxSize");
    settings.setNilValueForKey("other");
    settings.removeObjectForKey("never");
    other.cancel();
    manual.run();
    EXPECT_EQ(seen, "6>100 ");
}

TEST(SettingsStore, AnObserverMayWrite) {
    ManualWorld manual;
    OVUserDefaults settings;
    std::string seen;
    Subscription first = settings.addObserver("a", [&](const json&, const json& now) {
        seen += "a" + now.dump();
        if (now < 3) settings.setInteger(now.get<int>() + 1, "a");
        settings.setInteger(now.get<int>(), "b");
    });
    Subscription second =
        settings.addObserver("b", [&](const json&, const json& now) { seen += "b" + now.dump(); });
    settings.setInteger(1, "a");
    manual.run();
    EXPECT_EQ(seen, "a1a2b1a3b2b3");
}

TEST(SettingsStore, TwoWritersAndManyReaders) {
    constexpr int kWrites = 5000;
    const TemporaryFolder folder;
    std::vector<std::pair<json, json>> changes;
    {
        World world;
        OVUserDefaults settings(fileIn(folder));
        Subscription subscription = settings.addObserver(
            "shared", [&](const json& old, const json& now) { changes.emplace_back(old, now); });
        std::vector<std::thread> threads;
        std::atomic<int> ready = 0;
        for (int writer = 0; writer < 2; writer++)
            threads.emplace_back([&settings, &ready, writer] {
                ready++;
                while (ready < 2) std::this_thread::yield();
                for (int i = 0; i < kWrites; i++) {
                    settings.setObject({writer, i}, "shared");
                    settings.setInteger(i, writer ? "own1" : "own0");
                    EXPECT_EQ(settings.integerForKey(writer ? "own1" : "own0"), i);
                }
            });
        for (int reader = 0; reader < 2; reader++)
            threads.emplace_back([&settings] {
                for (int i = 0; i < 2000; i++) {
                    const json value = settings.objectForKey("shared");
                    EXPECT_TRUE(value.is_null() || value.size() == 2);
                }
            });
        for (auto& thread : threads) thread.join();
        while (world.mainQueue().runPending()) {}
    }
    ASSERT_EQ(changes.size(), 2u * kWrites);
    for (size_t i = 1; i < changes.size(); i++)
        EXPECT_EQ(changes[i].first, changes[i - 1].second) << "one order for all";
    EXPECT_EQ(stored(folder)["shared"], changes.back().second);
    EXPECT_EQ(stored(folder)["own0"], kWrites - 1);
    EXPECT_EQ(stored(folder)["own1"], kWrites - 1);
}

TEST(SettingsStore, TheEndOfTheWorldWritesTheSettings) {
    const TemporaryFolder folder;
    for (int run = 1; run <= 3; run++) {
        World world;
        world.provide<OVUserDefaults>(fileIn(folder));
        OVUserDefaults& settings = OVUserDefaults::sharedInstance();
        EXPECT_EQ(settings.integerForKey("numberOfInvocations"), run - 1);
        world.work().drainAll();  // as the end does: nothing is written behind any more
        settings.setInteger(run, "numberOfInvocations");
    }
    EXPECT_EQ(stored(folder), json({{"numberOfInvocations", 3}}));
}

TEST(OVUserDefaults, ReadsWhatItWrote) {
    World world;
    OVUserDefaults& settings = OVUserDefaults::sharedInstance();
    settings.setURL(FileURL("/home/b\xff/\u00e9"), "url");
    EXPECT_EQ(settings.URLForKey("url"), FileURL("/home/b\xff/\u00e9"));
    settings.setDouble(0.25, "number");
    EXPECT_EQ(settings.doubleForKey("number"), 0.25);
    EXPECT_EQ(settings.floatForKey("number"), 0.25f);
    EXPECT_TRUE(settings.boolForKey("number"));
    settings.setValue({"a", "b"}, "list");
    EXPECT_EQ(settings.stringArrayForKey("list"), (std::vector<std::string>{"a", "b"}));
    EXPECT_EQ(settings.arrayForKey("list"), json({"a", "b"}));
    settings.setObject({{"k", 1}}, "dictionary");
    EXPECT_EQ(settings.dictionaryForKey("dictionary"), json({{"k", 1}}));
    settings.setObject("text", "text");
    EXPECT_EQ(settings.stringForKey("text"), "text");
}

TEST(OVUserDefaults, AnotherTypeReadsAsNothing) {
    World world;
    OVUserDefaults& settings = OVUserDefaults::sharedInstance();
    settings.setObject({1, "b"}, "mixed");
    settings.setObject("text", "text");
    for (const char* key : {"absent", "mixed", "text"}) {
        EXPECT_FALSE(settings.boolForKey(key));
        EXPECT_EQ(settings.integerForKey(key), 0);
        EXPECT_EQ(settings.doubleForKey(key), 0.0);
        EXPECT_TRUE(settings.dictionaryForKey(key).is_null());
        EXPECT_FALSE(settings.stringArrayForKey(key));
    }
    EXPECT_FALSE(settings.stringForKey("mixed"));
    EXPECT_FALSE(settings.URLForKey("mixed"));
    EXPECT_TRUE(settings.arrayForKey("text").is_null());
    EXPECT_TRUE(settings.objectForKey("absent").is_null());
    for (const json& huge : {json(1e300), json(~0ull)}) {
        settings.setObject(huge, "huge");
        EXPECT_EQ(settings.integerForKey("huge"), std::numeric_limits<int64_t>::max());
    }
    settings.setObject(-2.9, "huge");
    EXPECT_EQ(settings.integerForKey("huge"), -2);
}

TEST(ProcessFlagsMirror, FollowsTheSettings) {
    ManualWorld manual;
    OVUserDefaults settings;
    settings.registerDefaults({{"logLevel", 7}});
    settings.setBool(true, "debugSearch");
    {
        const ProcessFlagsMirror mirror(settings);
        EXPECT_TRUE(processFlags.debugSearch);
        EXPECT_FALSE(processFlags.processMetadata);
        settings.setBool(true, "processMetadata");
        settings.setBool(false, "debugSearch");
        settings.setInteger(1, "logLevel");
        bool seenByNext = false;
        Subscription next = settings.addObserver(
            "processMetadata", [&](auto&, auto&) { seenByNext = processFlags.processMetadata; });
        manual.run();
        EXPECT_TRUE(seenByNext) << "the mirror is told first";
        EXPECT_FALSE(processFlags.debugSearch);
        EXPECT_EQ(logging::level(), 1u);
        settings.removeObjectForKey("processMetadata");
        settings.removeObjectForKey("logLevel");
        manual.run();
        EXPECT_FALSE(processFlags.processMetadata);
        EXPECT_EQ(logging::level(), 7u);
    }
    settings.setBool(true, "dumpCache");
    manual.run();
    EXPECT_FALSE(processFlags.dumpCache) << "after its end";
}
