#pragma once
#include "platform/Applications.h"

/// The applications that are registered with the desktop (mimeapps.list and desktop files).
/// Owner:   main. Threads: main.
/// Fails:   with a text; an application that is started and dies is not our failure.
class LinuxApplications : public Applications {
  public:
    /// Whether QT_QPA_PLATFORM is our own choice: it is not for others then.
    explicit LinuxApplications(bool ownsPlatformChoice) : ownsPlatformChoice_(ownsPlatformChoice) {}
    /// The first bytes of the file are read to tell its type. What could be run is opened as the
    /// text that it is: neither a program nor a desktop file is ever started from here.
    Result<void> openInDefaultApplication(const FileURL& url) override;

  private:
    const bool ownsPlatformChoice_;
};
