#pragma once
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include "util/FileURL.h"

/// A folder of a test's own, gone with all it holds when the test ends. Paths are relative to it.
class TemporaryFolder {
  public:
    TemporaryFolder() {
        const char* base = std::getenv("TMPDIR");
        // Digits alone tell them apart: a test that searches for letters must not find the folder.
        const std::string stem = std::string(base && *base ? base : "/tmp") + "/trovast-test-";
        std::string name;
        for (unsigned long number = static_cast<unsigned long>(getpid()) * 1000;; number++) {
            name = stem + std::to_string(number);
            if (mkdir(name.c_str(), 0700) == 0) break;
            if (errno != EEXIST) std::abort();
        }
        // What the test sees is what the index would build from the root.
        char* real = realpath(name.c_str(), nullptr);
        url_ = FileURL(real);
        std::free(real);
    }
    ~TemporaryFolder() {
        removeBelow(open(url_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        rmdir(url_.c_str());
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const FileURL& url() const { return url_; }
    FileURL at(std::string_view path) const { return url_.appending(path); }
    /// Folders on the way are made; the content replaces an older one.
    FileURL file(std::string_view path, std::string_view content = {}) const {
        folder(path.substr(0, path.rfind('/') == std::string_view::npos ? 0 : path.rfind('/')));
        const FileURL url = at(path);
        const int fd = open(url.c_str(), O_CREAT | O_TRUNC | O_WRONLY | O_CLOEXEC, 0600);
        if (fd >= 0) {
            if (write(fd, content.data(), content.size()) < 0) std::abort();
            close(fd);
        }
        return url;
    }
    FileURL folder(std::string_view path) const {
        for (size_t slash = path.find('/'); slash != std::string_view::npos;
             slash = path.find('/', slash + 1))
            mkdir(at(path.substr(0, slash)).c_str(), 0700);
        if (!path.empty()) mkdir(at(path).c_str(), 0700);
        return path.empty() ? url_ : at(path);
    }
    FileURL link(std::string_view path, const char* target) const {
        if (symlink(target, at(path).c_str()) != 0) std::abort();
        return at(path);
    }

  private:
    /// By handles, so that any depth can be reached. Closes the handle.
    static void removeBelow(int folder) {
        DIR* entries = folder < 0 ? nullptr : fdopendir(folder);
        if (!entries) return;
        while (const dirent* entry = readdir(entries)) {
            if (!std::strcmp(entry->d_name, ".") || !std::strcmp(entry->d_name, "..")) continue;
            if (unlinkat(folder, entry->d_name, 0) == 0) continue;
            if (fchmodat(folder, entry->d_name, 0700, 0) != 0) continue;
            removeBelow(
                openat(folder, entry->d_name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
            unlinkat(folder, entry->d_name, AT_REMOVEDIR);
        }
        closedir(entries);
    }

    FileURL url_;
};
