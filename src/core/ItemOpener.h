#pragma once
#include <functional>
#include <string>

#include "util/FileURL.h"

class Applications;

/// Opens what is selected with the application that the desktop has for it.
/// Owner:   AppDelegate. Threads: main.
class ItemOpener {
  public:
    /// error shows a short text to the user.
    ItemOpener(Applications& applications, std::function<void(const std::string&)> error)
        : applications_(applications), error_(std::move(error)) {}

    /// False, with a message shown, when there is nothing that could be opened.
    bool openFileInDefaultApplication(const FileURL& url);

  private:
    Applications& applications_;
    const std::function<void(const std::string&)> error_;
};
