#include "util/settings/SettingsStore.h"

#include <nlohmann/json.hpp>
#include <utility>
#include <vector>

#include "util/World.h"
#include "util/log.h"
#include "util/settings/SettingsFile.h"

namespace {
using nlohmann::json;

bool equal(const SettingsValue& a, const SettingsValue& b) {
    return a == b || (a && b && *a == *b);
}
}  // namespace

/// Outlives the store in blocks that wait on the main queue.
struct SettingsStore::Observers {
    struct Change {
        std::string key;
        SettingsValue old, now;
    };
    std::mutex mutex;
    std::map<std::string, Signal<json, json>, std::less<>> signals;
    std::vector<Change> waiting;

    /// Main thread. What an observer changes is told by the next block.
    void tell() {
        static constexpr auto orNull = [](const SettingsValue& value) {
            return value ? *value : json();
        };
        std::vector<Change> changes;
        {
            std::lock_guard lock(mutex);
            changes.swap(waiting);
        }
        for (const Change& change : changes) {
            std::optional<Signal<json, json>> signal;
            {
                std::lock_guard lock(mutex);
                const auto found = signals.find(change.key);
                if (found != signals.end()) signal = found->second;
            }
            if (signal) signal->emit(orNull(change.old), orNull(change.now));
        }
    }
};

SettingsStore::SettingsStore() : SettingsStore(nullptr) {}

SettingsStore::SettingsStore(std::unique_ptr<SettingsFile> file)
    : observers_(std::make_shared<Observers>()), file_(std::move(file)) {
    if (!file_) return;
    load();
    queue_.emplace("settingsQ", Qos::utility);
}

SettingsStore::~SettingsStore() {
    queue_.reset();
    flush();
}

void SettingsStore::load() {
    json object = file_->read();
    for (auto& [key, value] : object.items()) {
        auto stored = std::make_shared<const json>(std::move(value));
        const auto [admitted, complaint] = admitSetting(key, stored);
        if (complaint) logWarning("Setting '%s' %s", key.c_str(), complaint);
        entries_[key] = {std::move(stored), admitted, nullptr};
    }
}

bool SettingsStore::isTrusted() const {
    return !file_ || file_->isTrusted();
}

void SettingsStore::registerDefaults(const json& defaults) {
    std::lock_guard lock(mutex_);
    for (const auto& [key, value] : defaults.items())
        entries_[key].registered = std::make_shared<const json>(value);
}

SettingsStore::Entry SettingsStore::entry(std::string_view key) const {
    std::lock_guard lock(mutex_);
    const auto found = entries_.find(key);
    return found == entries_.end() ? Entry() : found->second;
}

SettingsValue SettingsStore::value(std::string_view key) const {
    std::lock_guard lock(mutex_);
    const auto found = entries_.find(key);
    return found == entries_.end() ? nullptr : found->second.effective();
}

void SettingsStore::set(std::string_view key, json value) {
    if (value.is_null()) return remove(key);
    const auto [admitted, complaint] =
        admitSetting(key, std::make_shared<const json>(std::move(value)));
    if (complaint) logWarning("Setting '%s' %s", std::string(key).c_str(), complaint);
    if (admitted) change(key, admitted);
}

void SettingsStore::remove(std::string_view key) {
    change(key, nullptr);
}

void SettingsStore::change(std::string_view key, const SettingsValue& value) {
    bool tell = false;
    {
        std::lock_guard writing(writers_);
        const Entry old = entry(key);
        if (equal(old.stored, value)) return;
        const SettingsValue now = value ? value : old.registered;
        {
            std::lock_guard lock(mutex_);
            Entry& changed = entries_[std::string(key)];
            changed.stored = changed.admitted = value;
            changes_++;
        }
        if (World::exists() && !equal(old.effective(), now)) {
            std::lock_guard lock(observers_->mutex);
            tell = observers_->waiting.empty();
            observers_->waiting.push_back({std::string(key), old.effective(), now});
        }
    }
    if (tell) MainQueue::async([observers = observers_] { observers->tell(); });
    scheduleWrite();
}

Subscription SettingsStore::observe(std::string_view key, Observer observer) {
    std::lock_guard lock(observers_->mutex);
    return observers_->signals[std::string(key)].observe(std::move(observer));
}

void SettingsStore::scheduleWrite() {
    if (!queue_ || writeScheduled_.exchange(true)) return;
    queue_->async([this] {
        writeScheduled_ = false;
        writeIfNeeded();
    });
}

void SettingsStore::flush() {
    writeIfNeeded();
}

void SettingsStore::writeIfNeeded() {
    std::lock_guard file(fileMutex_);
    if (!file_) return;
    std::vector<std::pair<std::string, SettingsValue>> stored;
    uint64_t changes;
    {
        std::lock_guard lock(mutex_);
        changes = changes_;
        if (changes == changesWritten_) return;
        for (const auto& [key, entry] : entries_)
            if (entry.stored) stored.emplace_back(key, entry.stored);
    }
    json object = json::object();
    for (const auto& [key, value] : stored) object[key] = *value;
    if (file_->write(object)) changesWritten_ = changes;
}
