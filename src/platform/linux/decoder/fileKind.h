#pragma once
#include <string_view>

/// How a file is to be read.
enum class FileKind { unknown, picture, drawing, pdf, media };

/// By its first bytes, for formats that have no mark of their own also by its name: a file may lie
/// about what it is. Threads: any.
FileKind fileKind(std::string_view firstBytes, std::string_view name);
constexpr size_t kBytesForKind = 64;
