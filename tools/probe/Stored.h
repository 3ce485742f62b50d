#pragma once
#include <nlohmann/json.hpp>

/// Values as the settings keep them (projects, actions, rules, marked items) in requests and
/// replies. In the settings a path is text by pathToText; in the console it is as every path, so
/// all texts are translated, keys too. Threads: any.

/// Throws an OpError for a lone surrogate that stands for no byte: settings keep valid text alone.
nlohmann::json storedFromCarried(const nlohmann::json& value);
nlohmann::json carriedFromStored(const nlohmann::json& value);
