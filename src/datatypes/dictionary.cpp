#include "datatypes/dictionary.h"

#include <nlohmann/json.hpp>

namespace dictionary {

using nlohmann::json;

namespace {

const json* find(const json& dictionary, const char* key) {
    if (!dictionary.is_object()) return nullptr;
    const auto found = dictionary.find(key);
    return found == dictionary.end() ? nullptr : &*found;
}

}  // namespace

std::optional<std::string> text(const json& dictionary, const char* key) {
    const json* value = find(dictionary, key);
    if (!value || !value->is_string()) return std::nullopt;
    return value->get<std::string>();
}

bool flag(const json& dictionary, const char* key, bool missing) {
    const json* value = find(dictionary, key);
    if (value && value->is_boolean()) return value->get<bool>();
    if (value && value->is_number_integer()) return *value != 0;
    return missing;
}

uint8_t byte(const json& dictionary, const char* key, uint8_t missing) {
    const auto value = number(dictionary, key);
    return value && *value >= 0 && *value <= 255 ? static_cast<uint8_t>(*value) : missing;
}

std::optional<int64_t> number(const json& dictionary, const char* key) {
    constexpr double kEnd = 9223372036854775808.0;  // 2^63
    const json* value = find(dictionary, key);
    if (!value || !value->is_number()) return std::nullopt;
    if (value->is_number_unsigned() && value->get<uint64_t>() > INT64_MAX) return std::nullopt;
    if (!value->is_number_float()) return value->get<int64_t>();
    const auto real = value->get<double>();
    if (!(real >= -kEnd && real < kEnd)) return std::nullopt;
    return static_cast<int64_t>(real);
}

std::span<const json> array(const json& dictionary, const char* key) {
    const json* value = find(dictionary, key);
    if (!value || !value->is_array()) return {};
    return value->get_ref<const json::array_t&>();
}

Original original(const json& dictionary) {
    return dictionary.is_object() ? std::make_shared<const json>(dictionary) : nullptr;
}

json copyOf(const Original& original) {
    return original ? *original : json::object();
}

}  // namespace dictionary
