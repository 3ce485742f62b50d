#pragma once
#include <functional>
#include <optional>
#include <vector>

#include "platform/Previews.h"
#include "screen/PreviewView.h"
#include "util/queues/MainQueue.h"

class FileTypes;

/// What the selected item holds, in a panel beside the window that follows the selection. Whoever
/// runs through the list is not kept up: a moment passes before a file is looked into, and what is
/// no longer selected is dropped.
/// Owner:   AppDelegate. Threads: main.
class PreviewController {
  public:
    struct Parts {
        PreviewView& view;
        Previews& previews;
        const FileTypes& fileTypes;
        std::function<std::vector<FileURL>()> selection;
        std::function<void(const std::string&)> error;
    };
    explicit PreviewController(const Parts& parts) : parts_(parts) {}
    ~PreviewController() { close(); }

    /// False: nothing is selected.
    bool togglePreviewPanel();
    bool isVisible() const { return parts_.view.isVisible(); }
    void close();
    /// The selection may be another one; looked at a moment later.
    void selectionMayHaveChanged();

  private:
    void follow();
    void request(const FileURL& url);
    void show(const FileURL& url, const Preview& preview);
    void showNone(size_t selected);
    PreviewContent contentFor(const FileURL& url, bool isFolder) const;

    const Parts parts_;
    std::optional<FileURL> shown_;  // what is in the panel, or on its way
    OneShotTimer follow_, loading_;
};
