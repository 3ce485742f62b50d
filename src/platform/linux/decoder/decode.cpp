#include "platform/linux/decoder/decode.h"

#include <unistd.h>

#include <QFile>
#include <QGuiApplication>
#include <QImageReader>
#include <algorithm>
#include <array>
#include <memory>

#include "platform/linux/decoder/OpenedItem.h"
#include "platform/linux/decoder/ThumbnailStore.h"
#include "platform/linux/decoder/facts.h"
#include "platform/linux/decoder/fileKind.h"
#include "platform/linux/decoder/listFolder.h"
#include "platform/linux/decoder/modules.h"
#include "platform/linux/decoder/readPicture.h"
#include "platform/linux/decoder/readText.h"
#include "platform/linux/decoder/sandbox.h"

namespace {

constexpr int kExitUnprotected = 3;

std::string readAt(int handle, size_t length) {
    std::string bytes(length, '\0');
    size_t filled = 0;
    while (filled < length) {
        const ssize_t count =
            pread(handle, bytes.data() + filled, length - filled, static_cast<off_t>(filled));
        if (count <= 0) break;
        filled += static_cast<size_t>(count);
    }
    bytes.resize(filled);
    return bytes;
}

/// Ends the program where there is no sandbox: nothing is decoded outside.
void enterSandbox(const std::string& programFolder) {
    if (!sandbox::enter(programFolder)) _exit(kExitUnprotected);
}

/// What a file's decoder needs of the system, made ready while the system's files may be read.
class Decoder {
  public:
    Decoder(const DecodeTask& task, FileKind kind) : kind_(kind) {
        constexpr auto kPlatform = "-platform";
        arguments_ = {const_cast<char*>("trovast-preview"), const_cast<char*>(kPlatform),
                      const_cast<char*>("offscreen"), nullptr};
        if (kind == FileKind::drawing)
            application_ = std::make_unique<QGuiApplication>(count_, arguments_.data());
        else
            application_ = std::make_unique<QCoreApplication>(count_, arguments_.data());
        if (kind == FileKind::picture || kind == FileKind::drawing)
            (void)QImageReader::supportedImageFormats();  // loads the readers
        if (kind == FileKind::pdf) module_ = modules::load(task.programFolder, modules::kPdf);
        if (kind == FileKind::media) module_ = modules::load(task.programFolder, modules::kMedia);
    }
    /// False: its module is not installed.
    bool isPresent() const {
        return module_ || (kind_ != FileKind::pdf && kind_ != FileKind::media);
    }
    void decode(int handle, uint32_t pixels, Preview& preview) const {
        if (module_) module_(handle, pixels, preview);
        if (kind_ == FileKind::picture || kind_ == FileKind::drawing)
            readPicture(handle, pixels, preview);
    }

  private:
    const FileKind kind_;
    int count_ = 3;
    std::array<char*, 4> arguments_;
    std::unique_ptr<QCoreApplication> application_;
    modules::Decode* module_ = nullptr;
};

void showText(int handle, int64_t size, Preview& preview) {
    const std::string bytes = readAt(handle, kBytesOfText);
    if (bytes.empty()) {
        preview.message = "The file is empty.";
        return;
    }
    const auto read = readText(bytes, bytes.size() < kBytesOfText);
    if (!read) return;
    preview.message.clear();
    preview.kind = Preview::Kind::text;
    preview.text = read->text;
    if (!read->isCut) return;
    const auto shown = static_cast<int64_t>(bytes.size());
    preview.message = "The beginning of " + sizeText(std::max(size, shown)) + ".";
}

FileKind kindOf(const DecodeTask& task, const OpenedItem& item) {
    if (!item.handle || !S_ISREG(item.info.st_mode)) return FileKind::unknown;
    return fileKind(readAt(item.handle.get(), kBytesForKind), task.path);
}

/// A text may begin as other files do. A document is none, even where all of it is letters: what
/// its decoder says of it is worth more.
bool mayBeText(int handle, FileKind kind) {
    return kind != FileKind::pdf || !isDocument(readAt(handle, kBytesForKind));
}

}  // namespace

Preview makePreview(const DecodeTask& task) {
    const OpenedItem item = openItem(task.path);
    Preview preview;
    preview.facts = factsOf(task.path, item);
    preview.isFolder = item.exists && S_ISDIR(item.info.st_mode);
    preview.message = item.trouble;
    const FileKind kind = kindOf(task, item);
    const Decoder decoder(task, kind);
    enterSandbox(task.programFolder);
    if (!item.handle) return preview;
    if (preview.isFolder) {
        listFolder(item.handle.get(), preview);
        return preview;
    }
    const size_t factsOfFile = preview.facts.size();
    decoder.decode(item.handle.get(), task.pixels, preview);
    if (!preview.picture && preview.facts.size() == factsOfFile &&
        mayBeText(item.handle.get(), kind))
        showText(item.handle.get(), item.info.st_size, preview);
    return preview;
}

// ---- Thumbnails

namespace {

/// Null: not a thumbnail of this file as it is now.
std::shared_ptr<const Picture> readStored(FileHandle handle, const std::string& uri,
                                          const std::string& mtime, uint32_t pixels) {
    QFile file;
    if (!handle || !file.open(handle.get(), QIODevice::ReadOnly)) return nullptr;
    QImageReader reader(&file, "png");
    const QSize size = reader.size();
    if (size.isEmpty() || size.width() > 1024 || size.height() > 1024) return nullptr;
    const QImage image = reader.read();
    const auto says = [&image](const char* key, const std::string& value) {
        return image.text(QLatin1String(key)).toStdString() == value;
    };
    if (!says(thumbnailStore::kUriKey, uri) || !says(thumbnailStore::kMTimeKey, mtime))
        return nullptr;
    return toPicture(image, pixels);
}

}  // namespace

std::optional<Preview> makeThumbnail(const DecodeTask& task, const std::string& store,
                                     FunctionRef<void(const Preview&)> announce) {
    const OpenedItem item = openItem(task.path);
    const FileKind kind = kindOf(task, item);
    if (kind == FileKind::unknown || thumbnailStore::isInside(store, task.path))
        return std::nullopt;
    const std::string uri = thumbnailStore::uriOf(task.path);
    const std::string mtime = std::to_string(item.info.st_mtime);
    std::vector<FileHandle> stored;
    for (const char* folder :
         {thumbnailStore::kNormal, thumbnailStore::kLarge, thumbnailStore::kFail}) {
        const std::string path = store + "/" + folder + "/" + thumbnailStore::nameOf(uri);
        stored.push_back(std::move(openItem(path).handle));
    }
    const Decoder decoder(task, kind);
    enterSandbox(task.programFolder);
    Preview answer;
    const char* source = "store";
    for (size_t i = 0; i < 2 && !answer.picture; i++)
        answer.picture = readStored(std::move(stored[i]), uri, mtime, task.pixels);
    if (!answer.picture && readStored(std::move(stored[2]), uri, mtime, task.pixels)) {
        source = "failed";
    } else if (!answer.picture && !decoder.isPresent()) {
        source = "none";
    } else if (!answer.picture) {
        source = "file";
        Preview head;
        head.facts = {{"Source", source}, {"MTime", mtime}};
        announce(head);
        decoder.decode(item.handle.get(), task.pixels, answer);
    }
    answer.kind = answer.picture ? Preview::Kind::picture : Preview::Kind::properties;
    answer.facts = {{"Source", source}, {"MTime", mtime}};
    return answer;
}
