#include <unistd.h>

#include <thread>

#include "index/checkTree.h"
#include "modes/framework/Notifications.h"
#include "support/ApplicationTest.h"
#include "util/settings/OVUserDefaults.h"

namespace {

using namespace std::chrono_literals;
using Names = std::vector<std::string>;

/// Streams of events that a test looks at.
struct RecordingEvents : FileEvents {
    struct Stream : FileEventStream {
        explicit Stream(RecordingEvents& o, Request r) : owner(o), request(std::move(r)) {}
        ~Stream() override { log("ended"); }
        void start() override { log("started " + std::to_string(request.sinceWhen)); }
        void stop() override { log("stopped"); }
        void log(const std::string& what) const {
            if (request.fileEvents) owner.log.push_back(request.paths.front().path() + " " + what);
        }
        RecordingEvents& owner;
        const Request request;
    };
    std::unique_ptr<FileEventStream> streamCreate(Request request) override {
        return std::make_unique<Stream>(*this, std::move(request));
    }
    uint64_t currentEventId() const override { return id; }

    uint64_t id = 7;
    Names log;
};

class ProjectsTest : public ApplicationTest {
  protected:
    void startWithTwoProjects() {
        a_ = home_.folder("a");
        b_ = home_.folder("b");
        home_.file("a/sheet in a");
        home_.file("b/sheet in b");
        launch({{"projects", {project("A", a_), project("B", b_)}}, {"currentProject", "A"}},
               [this](SimulatedDesktop& desktop) { desktop.eventSource = &events_; });
        session_->app().window().toggleMainWindow();
        settle();
    }
    /// On a queue, as the program does it.
    void makeCurrent(const std::string& uuid) {
        TRVMode::switchModeQueue().async([this, project = searchMode().projectByUuid(uuid)] {
            session_->app().projectSwitcher().makeCurrentProject(project);
        });
        settle();
    }
    bool browse(const FileURL& url) {
        bool done = false;
        TRVMode::switchModeQueue().async(
            [&] { done = searchMode().createVirtualProjectFromPath(url); });
        settle();
        return done;
    }
    static nlohmann::json setting(const char* key) {
        return OVUserDefaults::sharedInstance().objectForKey(key);
    }

    RecordingEvents events_;  // outlives the session
    FileURL a_, b_;
    struct EndSession {
        std::unique_ptr<AppSession>& session;
        ~EndSession() { session.reset(); }
    } end_{session_};
};

TEST_F(ProjectsTest, EachKeepsItsIndexAndItsStreamGoesOnWhereItStopped) {
    startWithTwoProjects();
    type(u"sheet");
    EXPECT_EQ(names(), Names{"sheet in a"});
    EXPECT_EQ(events_.log, Names{a_.path() + " started 7"});
    const auto cacheOfA = searchMode().sharedCurrentCache();
    events_.id = 20;
    makeCurrent("B");
    EXPECT_EQ(field().content, u"");
    EXPECT_TRUE(names().empty());
    type(u"sheet");
    EXPECT_EQ(names(), Names{"sheet in b"});
    EXPECT_EQ(setting("previousProject"), "A");
    EXPECT_EQ(setting("currentProject"), "B");
    EXPECT_EQ(setting("previousRealProject"), "B");

    events_.log.clear();
    events_.id = 30;
    makeCurrent("A");
    EXPECT_EQ(searchMode().sharedCurrentCache(), cacheOfA);
    // No event was ever seen: it resumes from where it was left.
    EXPECT_EQ(events_.log,
              (Names{b_.path() + " stopped", b_.path() + " ended", a_.path() + " started 20"}));
    type(u"sheet");
    EXPECT_EQ(names(), Names{"sheet in a"});
}

TEST_F(ProjectsTest, AFolderIsBrowsedAsAVirtualProjectAndOnlyTheLatestStays) {
    startWithTwoProjects();
    home_.link("to a", "a");
    ASSERT_TRUE(browse(home_.at("to a")));
    EXPECT_EQ(screen().field.placeholder, "Search to a/");
    EXPECT_EQ(screen().infoBar.text, "Search directory " + home_.at("to a").path());
    ASSERT_TRUE(browse(home_.at("a/sheet in a")));  // the folder of a file
    EXPECT_EQ(searchMode().currentProject()->uuid, a_.path());
    EXPECT_TRUE(setting("currentProject").is_object());
    EXPECT_EQ(setting("previousProject")["uuid"], home_.at("to a").path());
    EXPECT_TRUE(setting("previousRealProject").is_null()) << "no switch to a real one yet";
    const auto cache = searchMode().sharedCurrentCache();
    ASSERT_TRUE(browse(b_));
    EXPECT_EQ(cache.use_count(), 1) << "only this test holds the index of the one before";
    EXPECT_FALSE(browse(home_.at("nowhere")));
    EXPECT_EQ(searchMode().currentProject()->uuid, b_.path());

    // Up the tree by a key; a real project and the root stay.
    constexpr uint64_t kUp = kModifierCommand | kModifierNumericPad | kModifierFunction;
    EXPECT_TRUE(press(kKeyUp, kUp));
    settle();
    EXPECT_EQ(searchMode().currentProject()->uuid, home_.url().path());
    makeCurrent("A");
    EXPECT_FALSE(press(kKeyUp, kUp));
}

TEST_F(ProjectsTest, ChangedRulesAndMetadataBuildTheIndexAnew) {
    startWithTwoProjects();
    type(u"sheet");
    const auto before = searchMode().sharedCurrentCache();
    OVUserDefaults::sharedInstance().setBool(true, "processMetadata");
    settle();
    const auto after = searchMode().sharedCurrentCache();
    ASSERT_TRUE(after);
    EXPECT_NE(before, after);
    EXPECT_EQ(checkTree(*after), "");
    empty();
    type(u"sheet");
    EXPECT_EQ(names(), Names{"sheet in a"});
}

TEST_F(ProjectsTest, AnEditedProjectStaysCurrentAndAnotherIsLeft) {
    startWithTwoProjects();
    type(u"sheet");
    auto& settings = OVUserDefaults::sharedInstance();
    nlohmann::json edited = project("A", a_);
    edited["name"] = "Renamed";
    const auto cache = searchMode().sharedCurrentCache();
    settings.setObject({edited, project("B", b_)}, "projects");
    settle();
    EXPECT_EQ(screen().infoBar.text, "Search project Renamed [1/1]");
    EXPECT_EQ(field().content, u"sheet");
    EXPECT_EQ(searchMode().sharedCurrentCache(), cache);
    edited["visibleItemType"] = 2;
    settings.setObject({edited}, "projects");
    settle();
    EXPECT_TRUE(names().empty()) << "folders alone";
    edited["visibleItemType"] = 3;
    edited["folders"][0]["path"] = b_.path();
    settings.setObject({edited}, "projects");
    settle();
    EXPECT_EQ(names(), Names{"sheet in b"}) << "scanned anew, the text still there";
    edited["enabled"] = false;
    settings.setObject({edited}, "projects");
    settle();
    type(u"sheet");
    EXPECT_TRUE(names().empty()) << "no project, no rows";
}

TEST_F(ProjectsTest, AScanThatEndsBehindAHiddenWindowIsSeenWhenItOpens) {
    startWithTwoProjects();
    type(u"sheet");
    session_->app().window().hideMainWindow();
    Notifications::sharedInstance().scanParameterModified.emit(nullptr);
    settle();
    home_.file("a/x");
    session_->app().window().toggleMainWindow();
    session_->advance(2);
    settle();
    EXPECT_EQ(names(), Names{"sheet in a"});
}

TEST_F(ProjectsTest, AMissingFolderIsMarkedAndNamed) {
    startWithTwoProjects();
    home_.file("c/x");
    OVUserDefaults::sharedInstance().setObject({project("C", home_.at("gone"))}, "projects");
    settle();
    makeCurrent("C");
    type(u"x");
    EXPECT_EQ(screen().infoBar.text, "Search project C [0/0*]");
    EXPECT_EQ(screen().infoBar.toolTip, "Missing from cache:\n  • " + home_.at("gone").path());
}

TEST_F(ProjectsTest, TheVisibleListFollowsTheIndexOnceASecondAndRestsWhileHidden) {
    startWithTwoProjects();
    type(u"sheet");
    Cache& cache = *searchMode().currentCache();
    cache.addPath(home_.at("a/sheet 2"), {.ofType = 1, .inode = 99, .fsEventId = 5});
    session_->advance(0.5);
    settle();
    EXPECT_EQ(names().size(), 1u);
    session_->advance(4);
    settle();
    EXPECT_EQ(names().size(), 2u);
    session_->app().window().hideMainWindow();
    settle();
    EXPECT_EQ(session_->world().mainQueue().nextDue(), std::nullopt)
        << "nothing wakes the program while nobody looks";
}

TEST_F(ProjectsTest, SwitchingWhileAScanAndSearchesRunEndsAtTheLastOne) {
    for (int i = 0; i < 3000; i++)
        home_.file("a/d" + std::to_string(i % 60) + "/f" + std::to_string(i));
    startWithTwoProjects();
    for (int i = 0; i < 12; i++) {
        const auto project = searchMode().projectByUuid(i % 2 ? "A" : "B");
        TRVMode::switchModeQueue().async(
            [this, project] { session_->app().projectSwitcher().makeCurrentProject(project); });
        field().type(u"f");
        session_->world().mainQueue().runPending();
        std::this_thread::sleep_for(std::chrono::milliseconds(i));
    }
    settle();
    EXPECT_EQ(searchMode().currentProject()->uuid, "A");
    empty();
    type(u"f2999");
    EXPECT_EQ(names(), Names{"f2999"});
    EXPECT_EQ(checkTree(*searchMode().currentCache()), "");
}

}  // namespace
