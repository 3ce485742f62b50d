#pragma once
#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <string_view>

#include "util/Observable.h"
#include "util/queues/OperationQueue.h"
#include "util/settings/SettingsGate.h"

class SettingsFile;

/// All settings: what is stored, and under it the registered defaults. Values are immutable and
/// shared; a read takes a reference to one under a lock that is held for no longer than that, on
/// any thread, and never waits for the main thread. A write counts at once; its observers are told
/// later, on the main queue, in the order of the writes.
/// What is stored under a key of the wrong type stays in the file, and the default shows. Keys that
/// the program does not know are kept.
/// Owner:   OVUserDefaults. Threads: any, but for the constructor and the end.
/// Fails:   with a warning in the log that names the key, and nothing is changed. The file is
///          written on "settingsQ", soon; the end writes what is left.
class SettingsStore {
  public:
    /// Told of a change of the effective value on the main thread; null stands for absent.
    using Observer = std::function<void(const nlohmann::json& old, const nlohmann::json& now)>;

    /// In memory alone.
    SettingsStore();
    /// Reads the file.
    explicit SettingsStore(std::unique_ptr<SettingsFile> file);
    ~SettingsStore();
    SettingsStore(const SettingsStore&) = delete;
    SettingsStore& operator=(const SettingsStore&) = delete;

    /// An object; they are not stored, and nobody is told.
    void registerDefaults(const nlohmann::json& defaults);
    /// The stored value, else the default, else nothing.
    SettingsValue value(std::string_view key) const;
    /// A null value removes.
    void set(std::string_view key, nlohmann::json value);
    void remove(std::string_view key);
    /// Observers of one key are called in the order in which they came.
    [[nodiscard]] Subscription observe(std::string_view key, Observer observer);
    /// Returns when everything set before is on the disk, or cannot be.
    void flush();
    /// See SettingsFile.
    bool isTrusted() const;

  private:
    struct Entry {
        SettingsValue stored, admitted, registered;
        const SettingsValue& effective() const { return admitted ? admitted : registered; }
    };
    struct Observers;

    void load();
    void change(std::string_view key, const SettingsValue& value);
    Entry entry(std::string_view key) const;
    void scheduleWrite();
    void writeIfNeeded();

    std::mutex writers_;  // one at a time: held while they compare; taken before mutex_
    mutable std::mutex mutex_;
    std::map<std::string, Entry, std::less<>> entries_;
    uint64_t changes_ = 0;
    const std::shared_ptr<Observers> observers_;

    std::mutex fileMutex_;
    std::unique_ptr<SettingsFile> file_;
    uint64_t changesWritten_ = 0;
    std::atomic<bool> writeScheduled_ = false;
    std::optional<SerialQueue> queue_;
};
