#include "util/settings/OVUserDefaults.h"

#include <algorithm>
#include <limits>
#include <nlohmann/json.hpp>

#include "util/Unicode.h"
#include "util/World.h"
#include "util/settings/SettingsFile.h"

using nlohmann::json;

namespace {

template <class T>
T numberOrZero(const SettingsValue& value) {
    if (!value) return 0;
    if (value->is_boolean()) return value->get<bool>() ? T{1} : T{0};
    return value->is_number() ? value->get<T>() : T{0};
}

int64_t integerOrZero(const SettingsValue& value) {
    using Limits = std::numeric_limits<int64_t>;
    if (value && value->is_number_unsigned())
        return static_cast<int64_t>(
            std::min(value->get<uint64_t>(), static_cast<uint64_t>(Limits::max())));
    if (!value || !value->is_number_float()) return numberOrZero<int64_t>(value);
    const auto number = value->get<double>();
    if (number >= 9223372036854775808.0) return Limits::max();
    if (number <= -9223372036854775808.0) return Limits::min();
    return static_cast<int64_t>(number);
}

}  // namespace

OVUserDefaults::OVUserDefaults() = default;
OVUserDefaults::OVUserDefaults(std::unique_ptr<SettingsFile> file) : store_(std::move(file)) {}
OVUserDefaults::~OVUserDefaults() = default;

OVUserDefaults& OVUserDefaults::sharedInstance() {
    return World::current().shared<OVUserDefaults>();
}

json OVUserDefaults::objectForKey(std::string_view key) const {
    const SettingsValue value = store_.value(key);
    return value ? *value : json();
}

json OVUserDefaults::arrayForKey(std::string_view key) const {
    const SettingsValue value = store_.value(key);
    return value && value->is_array() ? *value : json();
}

json OVUserDefaults::dictionaryForKey(std::string_view key) const {
    const SettingsValue value = store_.value(key);
    return value && value->is_object() ? *value : json();
}

std::optional<std::string> OVUserDefaults::stringForKey(std::string_view key) const {
    const SettingsValue value = store_.value(key);
    if (!value || !value->is_string()) return std::nullopt;
    return value->get<std::string>();
}

std::optional<std::vector<std::string>> OVUserDefaults::stringArrayForKey(
    std::string_view key) const {
    const SettingsValue value = store_.value(key);
    const auto isString = [](const json& entry) { return entry.is_string(); };
    if (!value || !value->is_array() || !std::all_of(value->begin(), value->end(), isString))
        return std::nullopt;
    return value->get<std::vector<std::string>>();
}

std::optional<FileURL> OVUserDefaults::URLForKey(std::string_view key) const {
    const auto text = stringForKey(key);
    if (!text) return std::nullopt;
    return FileURL(textToPath(*text));
}

bool OVUserDefaults::boolForKey(std::string_view key) const {
    return numberOrZero<double>(store_.value(key)) != 0;
}
int64_t OVUserDefaults::integerForKey(std::string_view key) const {
    return integerOrZero(store_.value(key));
}
float OVUserDefaults::floatForKey(std::string_view key) const {
    return numberOrZero<float>(store_.value(key));
}
double OVUserDefaults::doubleForKey(std::string_view key) const {
    return numberOrZero<double>(store_.value(key));
}

void OVUserDefaults::setObject(json value, std::string_view forKey) {
    store_.set(forKey, std::move(value));
}
void OVUserDefaults::setValue(json value, std::string_view forKey) {
    store_.set(forKey, std::move(value));
}
void OVUserDefaults::setURL(const FileURL& url, std::string_view forKey) {
    store_.set(forKey, pathToText(url.path()));
}
void OVUserDefaults::setBool(bool value, std::string_view forKey) {
    store_.set(forKey, value);
}
void OVUserDefaults::setInteger(int64_t value, std::string_view forKey) {
    store_.set(forKey, value);
}
void OVUserDefaults::setFloat(float value, std::string_view forKey) {
    store_.set(forKey, value);
}
void OVUserDefaults::setDouble(double value, std::string_view forKey) {
    store_.set(forKey, value);
}
