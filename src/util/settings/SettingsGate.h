#pragma once
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <string_view>

/// One value of the settings; never changed once it is there. Null: absent.
using SettingsValue = std::shared_ptr<const nlohmann::json>;

/// What the gate lets through, and what is wrong with what it was given: a piece of a log line, or
/// null.
struct Admission {
    SettingsValue value;
    const char* complaint = nullptr;
};

/// The one gate between what stands in a file, or comes from outside, and the program: each key has
/// its type and, where it matters, its limits. A value of the wrong type gives nothing, a number
/// out of range the nearest limit, a list without its ill-typed entries; 0 and 1 serve as booleans.
/// A key that is not in the table takes any value. Threads: any.
Admission admitSetting(std::string_view key, SettingsValue value);

/// Deeper values are refused, here and in a file: others walk over them recursively.
constexpr int kMaxSettingsDepth = 200;
