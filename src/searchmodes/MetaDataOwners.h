#pragma once
#include <cstdint>
#include <optional>
#include <string>

/// Users and groups as the system's databases know them.
/// Threads: any. May ask a server, so not once an item. Fails: nothing where there is none, where
/// an entry needs more than 1024 bytes, and on trouble.
namespace metaDataOwners {

bool hasUser(uint32_t uid);
bool hasGroup(uint32_t gid);
std::optional<uint32_t> uidOfUser(const std::string& name);
std::optional<uint32_t> gidOfGroup(const std::string& name);

}  // namespace metaDataOwners
