#include "platform/linux/events/listFolder.h"

#include <dirent.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdint>
#include <cstring>

bool listFolder(int folder,
                FunctionRef<void(const char* name, unsigned char type, ino_t inode)> entry) {
    constexpr size_t kBuffer = 32768;
    alignas(dirent64) char buffer[kBuffer];
    for (;;) {
        const long length = syscall(SYS_getdents64, folder, buffer, kBuffer);
        if (length <= 0) return length == 0;
        for (const char* at = buffer; at < buffer + length;) {
            const auto* one = static_cast<const dirent64*>(static_cast<const void*>(at));
            at += one->d_reclen;
            if (std::strcmp(one->d_name, ".") != 0 && std::strcmp(one->d_name, "..") != 0)
                entry(one->d_name, one->d_type, one->d_ino);
        }
    }
}
