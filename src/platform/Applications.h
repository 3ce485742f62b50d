#pragma once
#include "util/FileURL.h"
#include "util/Result.h"

/// The applications of the desktop, asked to open things. Paths are bytes.
/// Owner:   main. Threads: main.
/// Fails:   with a text that can be shown; nothing waits for the application to come up.
class Applications {
  public:
    virtual ~Applications() = default;
    /// With the application that the desktop has for this kind of item.
    virtual Result<void> openInDefaultApplication(const FileURL& url) = 0;
};
