#pragma once
#include <memory>
#include <span>

class FileTypes;
class FileURL;
class Project;
struct GlobalRules;

/// Whether the user's rules keep a file out: every project folder around it leaves it out, or,
/// where there is none, the global rules do. By its path alone; the disk is not asked. Threads:
/// any.
bool isExcluded(const FileURL& url, std::span<const std::shared_ptr<const Project>> projects,
                const GlobalRules& global, const FileTypes& types);
