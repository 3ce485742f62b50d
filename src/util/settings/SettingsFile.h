#pragma once
#include <nlohmann/json_fwd.hpp>
#include <string>

#include "util/FileURL.h"

struct FileContent;

/// The file that keeps the settings: one JSON object, mode 0600 in a folder of mode 0700, replaced
/// in one step, with the state before the last write beside it as ".bak".
///
/// No file ever keeps the program from starting, and none is lost. What is no JSON object, is
/// deeper than kMaxSettingsDepth or larger than kMaxBytes is renamed to ".corrupt-<time>", and the
/// ".bak" takes its place if that one is good. What cannot be read, is no regular file, or belongs
/// to another user is left alone: settings then live in memory. Whatever is wrong is one warning.
/// A change of the file by others while the program runs counts at the next start unless the
/// program writes before; it is then the ".bak".
/// Owner:   SettingsStore. Threads: read first, on one thread; then write, one call at a time.
class SettingsFile {
  public:
    static constexpr size_t kMaxBytes = 64u << 20;

    explicit SettingsFile(FileURL url)
        : folder_(url.deletingLastPathComponent()), url_(std::move(url)) {}

    /// What is stored, once, at the start: always an object.
    nlohmann::json read();
    /// Nobody but the user could have written what was read. If not, what it says to run must not
    /// be run. Rights that others have on the file stay as they are, so that the next start knows.
    bool isTrusted() const { return trusted_; }
    /// Whether there is nothing left to do: the object is on the disk, or this file is not written.
    bool write(const nlohmann::json& object);

  private:
    nlohmann::json recover();
    bool setAside(bool keepName);
    void judge(const FileContent& content);
    FileURL backup() const { return FileURL(url_.path() + ".bak"); }

    const FileURL folder_;  // ours; url_ may come to lie elsewhere, behind a link
    FileURL url_;
    bool trusted_ = true;
    bool writes_ = true;
    bool complained_ = false;
    unsigned rightsOfOthers_ = 0;
};
