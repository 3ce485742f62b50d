#include <limits.h>
#include <unistd.h>

#include <clocale>
#include <cstdlib>
#include <cstring>

#include "platform/linux/decoder/PreviewMessage.h"
#include "platform/linux/decoder/decode.h"
#include "platform/linux/decoder/sandbox.h"
#include "util/FileIO.h"
#include "util/programFolder.h"

// trovast-preview preview PIXELS | thumbnail PIXELS STORE: looks into the file whose path stands on
// standard input, and writes what there is to see to standard output. One process a file.

namespace {

std::string readPath() {
    std::string path(PATH_MAX, '\0');
    size_t filled = 0;
    ssize_t count = 0;
    while (filled < path.size() &&
           (count = read(STDIN_FILENO, path.data() + filled, path.size() - filled)) > 0)
        filled += static_cast<size_t>(count);
    path.resize(filled);
    return path;
}

}  // namespace

int main(int count, char** arguments) {
    if (count < 3) return 2;
    const bool isThumbnail = std::strcmp(arguments[1], "thumbnail") == 0;
    if (isThumbnail && count < 4) return 2;
    sandbox::limitResources(isThumbnail ? sandbox::Urgency::background : sandbox::Urgency::awaited);
    std::setlocale(LC_ALL, "");
    const unsigned long pixels = std::strtoul(arguments[2], nullptr, 10);
    if (pixels == 0 || pixels > previewMessage::kMostPixels) return 2;
    const DecodeTask task{.path = readPath(),
                          .pixels = static_cast<uint32_t>(pixels),
                          .programFolder = programFolder().path()};
    const auto say = [](const Preview& preview) {
        return bool(writeAll(STDOUT_FILENO, previewMessage::encode(preview)));
    };
    bool isSaid = false;
    if (isThumbnail) {
        const auto thumbnail =
            makeThumbnail(task, arguments[3], [&say](const Preview& head) { (void)say(head); });
        isSaid = !thumbnail || say(*thumbnail);
    } else {
        isSaid = say(makePreview(task));
    }
    // No destructors: what a hostile file has left behind is not walked through once more.
    _exit(isSaid ? 0 : 1);
}
