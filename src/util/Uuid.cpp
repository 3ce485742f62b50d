#include "util/Uuid.h"

#include <errno.h>
#include <sys/random.h>

#include <cstdio>
#include <cstdlib>

std::string newUuid() {
    unsigned char b[16];
    // Sixteen bytes come whole; only the wait for the kernel's first entropy can be interrupted.
    while (getrandom(b, sizeof b, 0) < 0)
        if (errno != EINTR) std::abort();
    b[6] = static_cast<unsigned char>((b[6] & 0x0F) | 0x40);
    b[8] = static_cast<unsigned char>((b[8] & 0x3F) | 0x80);
    char text[37];
    std::snprintf(text, sizeof text,
                  "%02X%02X%02X%02X-%02X%02X-%02X%02X-%02X%02X-%02X%02X%02X%02X%02X%02X", b[0],
                  b[1], b[2], b[3], b[4], b[5], b[6], b[7], b[8], b[9], b[10], b[11], b[12], b[13],
                  b[14], b[15]);
    return text;
}
