#pragma once
#include <cstdint>
#include <string>

/// "rwx r-x ---" of the nine permission bits of a mode. Threads: any.
std::string permissionString(uint32_t mode);
