#pragma once
#include <cstdint>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <span>
#include <string>

/// Reading stored dictionaries leniently: what is missing, or is of another type, gives the value
/// for missing. Nothing throws. Threads: any.
namespace dictionary {

std::optional<std::string> text(const nlohmann::json& dictionary, const char* key);
/// 0 and 1 serve too.
bool flag(const nlohmann::json& dictionary, const char* key, bool missing = false);
uint8_t byte(const nlohmann::json& dictionary, const char* key, uint8_t missing = 0);
/// A fraction is cut off. Nothing for what 64 bits do not hold.
std::optional<int64_t> number(const nlohmann::json& dictionary, const char* key);
/// Of the dictionary's own; empty where there is no array.
std::span<const nlohmann::json> array(const nlohmann::json& dictionary, const char* key);

/// A dictionary as it was read. Who writes it lays his own keys over it, so that keys of other
/// versions stay. Null for what was no dictionary, or was not read.
using Original = std::shared_ptr<const nlohmann::json>;
Original original(const nlohmann::json& dictionary);
/// A dictionary in any case.
nlohmann::json copyOf(const Original& original);

}  // namespace dictionary
