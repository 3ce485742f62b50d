#pragma once
#include <functional>
#include <string>
#include <vector>

#include "util/FileURL.h"
#include "util/Result.h"

class Applications;
class Pasteboard;
class SearchWindowController;
class UserMessages;

/// What can be done with items at once, without asking: showing them in other programs, and
/// copying what they are called.
/// Owner:   AppDelegate. Threads: main. Each answers whether it did it.
/// Fails:   with a message shown.
class ItemActions {
  public:
    struct Parts {
        Applications& applications;
        Pasteboard& pasteboard;
        SearchWindowController& window;
        UserMessages& messages;
    };
    explicit ItemActions(const Parts& parts) : parts_(parts) {}
    using URLs = std::vector<FileURL>;

    bool actionShowInfo(const URLs& urls);
    bool actionRevealInFinder(const URLs& urls);
    bool actionOpenInTextEditor(const URLs& urls);
    /// By its identifier; the window goes.
    bool actionOpenWith(const URLs& urls, const std::string& application);
    bool actionCopyPathToClipboard(const URLs& urls) { return copyPaths(urls, What::paths); }
    bool actionCopyFilenameToClipboard(const URLs& urls) { return copyPaths(urls, What::names); }

  private:
    enum class What { paths, names };
    /// One a line, none behind the last.
    static std::string joinPathsByNewline(const URLs& urls, What what);
    bool copyPaths(const URLs& urls, What what);
    bool report(const Result<void>& result);

    const Parts parts_;
};
