#pragma once
#include <map>
#include <string>

#include "shell/registry/KeyboardShortcuts.h"

/// Why commands do not work on some items, by their identifiers.
using Refusals = std::map<std::string, std::string>;

/// Of pasting, while nothing is to be copied or moved.
constexpr auto kNoSource = "Mark an item as copy/move source first!";

/// Large selections are judged by their first items: each asks the disk.
std::vector<FileURL> itemsLookedAt(std::vector<FileURL> items);

/// Threads: any; it waits for the disk, so not the main one.
Refusals refusalsOf(const std::vector<FileURL>& items, const KeyboardShortcutEntries& commands);
