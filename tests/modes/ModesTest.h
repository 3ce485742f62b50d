#pragma once
#include <gtest/gtest.h>

#include "core/state/GlobalState.h"
#include "support/ApplicationTest.h"
#include "util/Unicode.h"
#include "util/settings/OVUserDefaults.h"

/// The application with one project, "P" on the folder root, and its modes.
class FileModesTest : public ApplicationTest {
  protected:
    using Names = std::vector<std::string>;

    FileModesTest() : root_(home_.folder("root")) {}
    ~FileModesTest() override { session_.reset(); }

    void start(nlohmann::json settings = nlohmann::json::object(), bool followsDisk = false) {
        settings["projects"] = {project("P", root_)};
        settings["currentProject"] = "P";
        session_ = std::make_unique<AppSession>(AppSession::Start{
            .home = home_.url(), .settings = std::move(settings), .followsDisk = followsDisk});
        session_->app().window().toggleMainWindow();
        settle();
    }
    AppDelegate& app() { return session_->app(); }
    TRVBrowserMode& browser() { return app().browserMode(); }
    TRVRecentMode& recent() { return app().recentMode(); }
    TRVMarkedItemsMode& marked() { return app().markedItemsMode(); }
    SimulatedTable& table() { return screen().table; }
    void enter(TRVMode& mode) {
        app().modeSwitcher().switchToMode(mode);
        settle();
    }
    /// What is done off the main thread, to its end.
    void behind(std::function<void()> work) {
        TRVMode::switchModeQueue().async(std::move(work));
        settle();
    }
    /// Instead of what stands in the field.
    void search(std::u16string_view text) {
        empty();
        type(text);
    }
    void select(const std::string& name) {
        const Names all = names();
        const auto found = std::find(all.begin(), all.end(), name);
        ASSERT_NE(found, all.end()) << name;
        table().click({static_cast<size_t>(found - all.begin())});
    }
    Names selected() {
        Names list;
        for (const size_t row : table().selectedRows()) list.push_back(table().row(row).name);
        return list;
    }
    FileURL under(std::string_view path) const { return FileURL(root_.path() + std::string(path)); }
    static bool exists(const FileURL& url) { return access(url.c_str(), F_OK) == 0; }

    const FileURL root_;
};
