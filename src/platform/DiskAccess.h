#pragma once

/// Whether the desktop lets the program read all of the user's files, or keeps some behind a
/// consent of its own.
/// Owner:   main. Threads: main.
class DiskAccess {
  public:
    virtual ~DiskAccess() = default;
    /// Tries to open a file that only a consent makes readable: 0, or the error number. Where
    /// there is no such consent: 0.
    virtual int openProtectedFile() const = 0;
    /// The file that was tried, for the log.
    virtual const char* protectedFile() const = 0;
    /// Shows the user where the consent is given.
    virtual void openSecurityAndPrivacy() = 0;
};
