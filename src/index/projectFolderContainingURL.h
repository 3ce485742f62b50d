#pragma once
#include <cstdint>
#include <memory>

class FileTypes;
class FileURL;
class Project;
class ProjectFolder;
struct GlobalRules;

/// Which folder of the project would have the path in its index; null: none. File operations ask
/// before they tell the Cache of what they did.
/// Threads: any; looks at the disk.
std::shared_ptr<const ProjectFolder> projectFolderContainingURL(const Project& project,
                                                                const FileURL& url,
                                                                const FileTypes& types);

/// Whether this folder, which stands around the path or is it, would have it as an item of that
/// type. By the path alone. Threads: any.
bool projectFolderTakes(const ProjectFolder& folder, const FileURL& url, uint8_t type,
                        const GlobalRules& global, const FileTypes& types);
