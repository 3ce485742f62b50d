#pragma once
#include <cstdint>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "util/FileURL.h"
#include "util/settings/SettingsStore.h"

/// The settings as the program sees them. A key that is absent or has another type reads as false,
/// 0 or nothing; what its default is stands in PreferencesController, what type it has in
/// SettingsGate. Files are kept as text by pathToText.
/// There are no accessors for bytes and colours: no setting is one.
/// Owner:   World (sharedInstance). Launch provides it with its file; left alone it is in memory.
/// Threads: any; nothing here waits for the main thread. Observers are called on the main thread,
///          after the write, in the order of the writes, and not for an equal value.
class OVUserDefaults {
  public:
    OVUserDefaults();
    explicit OVUserDefaults(std::unique_ptr<SettingsFile> file);
    ~OVUserDefaults();
    static OVUserDefaults& sharedInstance();

    void registerDefaults(const nlohmann::json& defaults) { store_.registerDefaults(defaults); }

    /// Null where absent. An array or a dictionary is shared, not copied, by valueForKey.
    nlohmann::json objectForKey(std::string_view key) const;
    SettingsValue valueForKey(std::string_view key) const { return store_.value(key); }
    /// Null where absent or of another type.
    nlohmann::json arrayForKey(std::string_view key) const;
    nlohmann::json dictionaryForKey(std::string_view key) const;
    std::optional<std::string> stringForKey(std::string_view key) const;
    /// Nothing where one entry is no string.
    std::optional<std::vector<std::string>> stringArrayForKey(std::string_view key) const;
    std::optional<FileURL> URLForKey(std::string_view key) const;
    bool boolForKey(std::string_view key) const;
    int64_t integerForKey(std::string_view key) const;
    float floatForKey(std::string_view key) const;
    double doubleForKey(std::string_view key) const;

    void setObject(nlohmann::json value, std::string_view forKey);
    void setValue(nlohmann::json value, std::string_view forKey);
    void setNilValueForKey(std::string_view key) { removeObjectForKey(key); }
    void setURL(const FileURL& url, std::string_view forKey);
    void setBool(bool value, std::string_view forKey);
    void setInteger(int64_t value, std::string_view forKey);
    void setFloat(float value, std::string_view forKey);
    void setDouble(double value, std::string_view forKey);
    void removeObjectForKey(std::string_view key) { store_.remove(key); }

    /// The end of the subscription removes the observer.
    [[nodiscard]] Subscription addObserver(std::string_view forKeyPath,
                                           SettingsStore::Observer observer) {
        return store_.observe(forKeyPath, std::move(observer));
    }
    /// Returns when everything set before is on the disk, or cannot be.
    void flush() { store_.flush(); }
    /// False: somebody else may have written the settings; user-defined actions must not be run.
    bool isTrusted() const { return store_.isTrusted(); }

  private:
    SettingsStore store_;
};
