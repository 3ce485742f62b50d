#pragma once
#include "platform/Applications.h"

/// The applications that are registered with the desktop (mimeapps.list and desktop files), by the
/// ids of their desktop files. What could be run is opened as the text that it is: neither a
/// program nor a desktop file is ever started from here.
/// Owner:   main. Threads: as the port; the first bytes of a file are read to tell its type.
/// Fails:   with a text; an application that is started and dies is not our failure, nor is a file
///          manager that shows something else.
class LinuxApplications : public Applications {
  public:
    /// Whether QT_QPA_PLATFORM is our own choice: it is not for others then.
    explicit LinuxApplications(bool ownsPlatformChoice) : ownsPlatformChoice_(ownsPlatformChoice) {}
    std::optional<std::string> defaultApplicationForItem(const FileURL& url) override;
    std::optional<std::string> defaultApplicationForDataOf(const FileURL& url) override;
    std::optional<Opener> defaultOpenerOf(const FileURL& url) const override;
    std::vector<Opener> applicationsForItems(const std::vector<FileURL>& urls) const override;
    std::optional<std::string> fileManager(const std::string& configured) override;
    std::optional<std::string> textEditor(const std::string& configured) override;
    Result<void> openWithApplication(const std::vector<FileURL>& urls,
                                     const std::string& application) override;
    Result<void> reveal(const std::vector<FileURL>& urls) override;
    Result<void> showInfo(const std::vector<FileURL>& urls) override;

  private:
    Result<void> callFileManager(const char* method, const std::vector<FileURL>& urls);

    const bool ownsPlatformChoice_;
};
