#pragma once
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "AppSession.h"
#include "support/TemporaryFolder.h"

/// The whole application on the simulated desktop, in a home folder of its own.
class ApplicationTest : public testing::Test {
  protected:
    void launch(nlohmann::json settings = nlohmann::json::object(),
                std::function<void(SimulatedDesktop&)> prepare = {}) {
        session_ = std::make_unique<AppSession>(AppSession::Start{.home = home_.url(),
                                                                  .settings = std::move(settings),
                                                                  .followsDisk = false,
                                                                  .prepare = std::move(prepare)});
    }
    /// The same, with the window shown.
    void start(nlohmann::json settings = nlohmann::json::object()) {
        launch(std::move(settings));
        session_->app().window().toggleMainWindow();
    }
    static nlohmann::json project(const std::string& uuid, const FileURL& folder) {
        return {{"uuid", uuid},
                {"name", uuid},
                {"enabled", true},
                {"matchFilenameOnly", true},
                {"folders", {{{"path", folder.path()}}}}};
    }
    SimulatedDesktop& desktop() { return session_->desktop(); }
    SimulatedScreen& screen() { return session_->screen(); }
    SimulatedField& field() { return screen().field; }
    TRVSearchMode& searchMode() { return session_->app().searchMode(); }
    void settle() { ASSERT_TRUE(session_->settle(20)) << "never settled"; }
    void type(std::u16string_view text) {
        field().type(text);
        settle();
    }
    bool press(uint64_t keyCode, uint64_t modifierFlags = 0) {
        return screen().send({.keyCode = keyCode, .modifierFlags = modifierFlags});
    }
    void empty() { field().setText({}); }
    std::vector<std::string> names() {
        std::vector<std::string> names;
        for (size_t row = 0; row < screen().table.numberOfRows(); row++)
            names.push_back(screen().table.row(row).name);
        return names;
    }
    /// What was asked of the desktop, by its kind.
    std::vector<nlohmann::json> requests(std::string_view what) {
        auto all = desktop().takeRequests();
        std::erase_if(all, [what](const auto& request) { return request["what"] != what; });
        return all;
    }

    TemporaryFolder home_;
    std::unique_ptr<AppSession> session_;
};
