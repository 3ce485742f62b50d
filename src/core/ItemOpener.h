#pragma once
#include <functional>
#include <optional>
#include <string>

#include "util/FileURL.h"
#include "util/Result.h"

class Applications;
class FrontmostApplication;

/// What the disk says of an item that is to be opened.
struct pathInfo_t {
    bool isSymlink = false;
    bool destinationExamined = false;  // of a link
    bool isFolder = false;             // also through a link
    bool folderOpened = false;         // its entries can be read
};

/// Opens what is selected with the application that the desktop has for it.
/// Owner:   AppDelegate. Threads: main, but for pathInfo.
/// Fails:   with a message shown.
class ItemOpener {
  public:
    struct Parts {
        Applications& applications;
        const FrontmostApplication& frontmost;
        std::function<void(const std::string&)> error;  // shows a short text to the user
    };
    explicit ItemOpener(Parts parts) : parts_(std::move(parts)) {}

    /// What an item is; the error can be shown. Any thread.
    static Result<pathInfo_t> pathInfo(const FileURL& url);
    void openFileInDefaultApplication(const FileURL& url, const pathInfo_t& pathInfo);
    /// With the application that was in front before us.
    void openFileInFrontMostApplication(const FileURL& url);

  private:
    std::optional<std::string> applicationFor(const FileURL& url, const pathInfo_t& pathInfo);
    void show(const Error& error);

    const Parts parts_;
};
