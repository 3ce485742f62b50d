#pragma once
#include <memory>

class FileTypes;
class FileURL;
class Project;
class ProjectFolder;

/// Which folder of the project would have the path in its index; null: none. File operations ask
/// before they tell the Cache of what they did.
/// Threads: any; looks at the disk.
std::shared_ptr<const ProjectFolder> projectFolderContainingURL(const Project& project,
                                                                const FileURL& url,
                                                                const FileTypes& types);
