#include "searchmodes/MetaDataOwners.h"

#include <grp.h>
#include <pwd.h>

#include <array>
#include <cerrno>

namespace {

// Kept: a group whose members take more room than this counts as unknown.
constexpr size_t kEntrySize = 1024;
using Buffer = std::array<char, kEntrySize>;

/// A name with a NUL inside would be looked up as what stands before it.
bool isName(const std::string& name) {
    return !name.empty() && name.find('\0') == std::string::npos;
}

}  // namespace

namespace metaDataOwners {

// An id is known also where its entry does not fit.

bool hasUser(uint32_t uid) {
    Buffer buffer;
    passwd entry, *found = nullptr;
    const int status = getpwuid_r(uid, &entry, buffer.data(), buffer.size(), &found);
    return status == ERANGE || (status == 0 && found);
}

bool hasGroup(uint32_t gid) {
    Buffer buffer;
    group entry, *found = nullptr;
    const int status = getgrgid_r(gid, &entry, buffer.data(), buffer.size(), &found);
    return status == ERANGE || (status == 0 && found);
}

std::optional<uint32_t> uidOfUser(const std::string& name) {
    Buffer buffer;
    passwd entry, *found = nullptr;
    if (!isName(name) || getpwnam_r(name.c_str(), &entry, buffer.data(), buffer.size(), &found) ||
        !found)
        return std::nullopt;
    return found->pw_uid;
}

std::optional<uint32_t> gidOfGroup(const std::string& name) {
    Buffer buffer;
    group entry, *found = nullptr;
    if (!isName(name) || getgrnam_r(name.c_str(), &entry, buffer.data(), buffer.size(), &found) ||
        !found)
        return std::nullopt;
    return found->gr_gid;
}

}  // namespace metaDataOwners
