#include "shell/registry/SearchHistoryController.h"

#include <nlohmann/json.hpp>

#include "util/World.h"
#include "util/settings/OVUserDefaults.h"

SearchHistoryController::SearchHistoryController()
    : SearchHistoryController(OVUserDefaults::sharedInstance()) {}

SearchHistoryController::SearchHistoryController(OVUserDefaults& settings)
    : settings_(settings),
      history_(settings.stringArrayForKey("history").value_or(std::vector<std::string>())),
      maxSize_(settings.integerForKey("historyMaxSize")),
      limit_(settings.addObserver("historyMaxSize", [this](auto&, auto&) {
          setMaxSize(settings_.integerForKey("historyMaxSize"));
      })) {}

SearchHistoryController& SearchHistoryController::sharedInstance() {
    return World::current().shared<SearchHistoryController>();
}

void SearchHistoryController::setMaxSize(int64_t maxSize) {
    maxSize_ = maxSize;
    if (maxSize <= 0 || static_cast<int64_t>(history_.size()) <= maxSize) return;
    history_.resize(static_cast<size_t>(maxSize));
    cursor_ = std::min(cursor_, maxSize - 1);
    store();
}

void SearchHistoryController::addItem(const std::string& string) {
    std::erase(history_, string);
    history_.insert(history_.begin(), string);
    // Kept: the second-last one goes, so that the oldest stays.
    if (maxSize_ > 0 && static_cast<int64_t>(history_.size()) > maxSize_)
        history_.erase(history_.begin() + (maxSize_ - 1));
    store();
}

std::optional<std::string> SearchHistoryController::currentItem() const {
    if (cursor_ < 0 || cursor_ >= static_cast<int64_t>(history_.size())) return std::nullopt;
    return history_[static_cast<size_t>(cursor_)];
}

std::optional<std::string> SearchHistoryController::previousItem() {
    if (cursor_ >= static_cast<int64_t>(history_.size()) - 1) return std::nullopt;
    return history_[static_cast<size_t>(++cursor_)];
}

std::string SearchHistoryController::nextItem() {
    if (cursor_ <= 0) return {};
    return history_[static_cast<size_t>(--cursor_)];
}

std::optional<std::string> SearchHistoryController::removeSearchTerm() {
    if (!currentItem()) return std::nullopt;
    history_.erase(history_.begin() + cursor_);
    store();
    return updateCursor();
}

void SearchHistoryController::removeSearchTerm(const std::string& string) {
    std::erase(history_, string);
    store();
}

std::string SearchHistoryController::updateCursor() {
    if (history_.empty()) return {};
    cursor_ = std::min(cursor_, static_cast<int64_t>(history_.size()) - 1);
    return history_[static_cast<size_t>(cursor_)];
}

void SearchHistoryController::store() const {
    settings_.setObject(history_, "history");
}
