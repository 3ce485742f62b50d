#pragma once
#include <optional>
#include <string>
#include <vector>

#include "util/FileURL.h"
#include "util/Result.h"

/// The applications of the desktop, asked to open things. They are known by their identifiers.
/// Owner:   main. Threads: main, but applicationsForItems and defaultOpenerOf: any.
/// Fails:   with a text that can be shown; nothing waits for the application to come up.
class Applications {
  public:
    using Identifier = std::string;

    /// One that can open items.
    struct Opener {
        Identifier identifier;
        std::string name = {};
        std::string iconName = {};  // freedesktop icon name, or the path of a picture
        bool isDefault = false;
    };

    virtual ~Applications() = default;
    /// The one that the desktop has for this kind of item.
    virtual std::optional<Identifier> defaultApplicationForItem(const FileURL& url) = 0;
    /// The one that shows the content of an item, whatever its kind; nothing for a folder.
    virtual std::optional<Identifier> defaultApplicationForDataOf(const FileURL& url) = 0;
    /// The one that opens an item when nobody says which: of its kind, or else of its data. By the
    /// name where that tells the kind; else it waits for the disk.
    virtual std::optional<Opener> defaultOpenerOf(const FileURL& url) const = 0;
    /// Those that open every one of the items, the default one first. Waits for the disk.
    virtual std::vector<Opener> applicationsForItems(const std::vector<FileURL>& urls) const = 0;
    /// The configured one, or the desktop's own where there is no such application.
    virtual std::optional<Identifier> fileManager(const Identifier& configured) = 0;
    virtual std::optional<Identifier> textEditor(const Identifier& configured) = 0;
    virtual Result<void> openWithApplication(const std::vector<FileURL>& urls,
                                             const Identifier& application) = 0;
    /// By the file manager: the items selected in their folder, and what it knows about them.
    virtual Result<void> reveal(const std::vector<FileURL>& urls) = 0;
    virtual Result<void> showInfo(const std::vector<FileURL>& urls) = 0;
};
