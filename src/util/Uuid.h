#pragma once
#include <string>

/// A new random identity of version 4 (RFC 4122), in upper case. Threads: any.
std::string newUuid();
