#pragma once
#include <sys/types.h>

#include <string>
#include <string_view>

#include "util/FileURL.h"
#include "util/Result.h"

/// Small files, read and written whole, so that a reader never sees half of one.
/// Threads: any. Fails: by an Error of domain "posix" with errno as its code.

/// An open file that closes itself.
class FileHandle {
  public:
    explicit FileHandle(int handle = -1) : handle_(handle) {}
    ~FileHandle() { reset(); }
    FileHandle(FileHandle&& other) noexcept : handle_(other.release()) {}
    FileHandle& operator=(FileHandle&& other) noexcept {
        if (this != &other) reset(other.release());
        return *this;
    }
    int get() const { return handle_; }
    explicit operator bool() const { return handle_ >= 0; }
    void reset(int handle = -1);
    int release();

  private:
    int handle_;
};

/// An Error that says what failed and why, from errno.
Error posixError(std::string description, int code);

struct FileContent {
    std::string bytes;
    uid_t owner;
    mode_t mode;  // the permission bits
};
/// A regular file's whole content. Never blocks on a pipe or a device: whatever is no regular file
/// gives EINVAL (a folder EISDIR), and more bytes than the limit give EFBIG.
Result<FileContent> readFile(const FileURL& url, size_t limit);

/// All of the bytes to the handle, whatever a single call takes.
Result<void> writeAll(int handle, std::string_view bytes);

/// Makes url's content these bytes in one step: a new file beside it, synced, takes its name. At
/// every moment, also after a power cut, the name has the old content or the new one. Where `keep`
/// is not empty the old file stays under that name (same folder), as far as the disk allows links.
Result<void> replaceFile(const FileURL& url, std::string_view bytes, mode_t mode,
                         const FileURL& keep = {});
/// Removes what replaceFile left beside url when the program was killed in the middle; what is
/// younger than ten minutes may be another process at work and stays.
void removeStaleReplacements(const FileURL& url);

/// Makes the folder and those around it where missing, each with mode 0700, and takes the rights of
/// others from the last one if it is ours.
Result<void> makePrivateFolder(const FileURL& url);
