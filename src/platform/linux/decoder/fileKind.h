#pragma once
#include <string_view>

/// How a file is to be read.
enum class FileKind { unknown, picture, drawing, pdf, media };

/// By its first bytes, for formats that have no mark of their own also by its name: a file may lie
/// about what it is. Threads: any.
FileKind fileKind(std::string_view firstBytes, std::string_view name);
/// Whether nothing but the version stands in the line of a document's mark: a text that speaks of
/// the mark goes on. Threads: any.
bool isDocument(std::string_view firstBytes);
constexpr size_t kBytesForKind = 64;
