#pragma once
#include <cstdint>
#include <string>

/// "1,234,567". Threads: any.
std::string grouped(int64_t number);
