#pragma once
#include <functional>
#include <memory>
#include <vector>

#include "util/FileURL.h"
#include "util/Picture.h"

/// Small pictures of files, which the desktop's programs share; made where there is none yet.
/// Threads: main. Fails: files of which there is none are never answered for.
class Thumbnails {
  public:
    /// On the main thread. Never after another request or the end of this one.
    using Answer = std::function<void(const FileURL&, const std::shared_ptr<const Picture>&)>;

    virtual ~Thumbnails() = default;
    /// Instead of all that was asked for before: these, one after another, without haste. Returns
    /// at once, whatever the files are on.
    virtual void request(std::vector<FileURL> urls, Answer answer) = 0;
    virtual void cancel() = 0;
};
