#pragma once
#include <string_view>

struct fs_item_t;

/// The order of items by their paths, names and extensions, without regard to case and by code
/// points. -1: the first one comes first; 1: the second one; 0: neither. Names that cannot be
/// converted are logged and order the first item first. In a read section of the Cache.

/// Component by component from the root down. An ancestor comes before what is below it.
/// Kept: two different items whose paths differ in case alone each come before the other.
int fs_item_path_compare(const fs_item_t* a, const fs_item_t* b);
/// The same, but 0 for these.
int comparePathsOfItems(const fs_item_t* a, const fs_item_t* b);
int lastPathComponentComperator(const fs_item_t* a, const fs_item_t* b);
/// By what stands behind the last dot; an item without an extension comes first.
int filenameExtensionComperator(const fs_item_t* a, const fs_item_t* b);
/// Without the dot; empty where there is none, as in ".profile" and "name.".
std::string_view extensionOfName(std::string_view name);
