#include "platform/linux/LinuxThumbnails.h"

#include <QBuffer>
#include <QImage>
#include <algorithm>

#include "platform/linux/decoder/PreviewMessage.h"
#include "platform/linux/decoder/ThumbnailStore.h"
#include "util/FileIO.h"
#include "util/queues/MainQueue.h"

namespace {

using End = DecoderProcess::End;
constexpr std::chrono::milliseconds kLimit{8000};

std::string factOf(const Preview& preview, std::string_view name) {
    for (const Preview::Fact& fact : preview.facts)
        if (fact.name == name) return fact.value;
    return {};
}

bool isNumber(std::string_view text) {
    if (text.starts_with('-')) text.remove_prefix(1);
    return !text.empty() && text.size() < 20 &&
           std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

QImage toImage(const Picture& picture) {
    const QImage image(reinterpret_cast<const uchar*>(picture.pixels.data()), int(picture.width),
                       int(picture.height), QImage::Format_ARGB32_Premultiplied);
    return image.convertToFormat(QImage::Format_ARGB32);
}

}  // namespace

void LinuxThumbnails::request(std::vector<FileURL> urls, Answer answer) {
    cancel();
    stale_ = std::make_shared<std::atomic<bool>>(false);
    for (FileURL& url : urls) {
        const DecoderProcess::Run run{
            .arguments = {"thumbnail", std::to_string(thumbnailStore::kNormalPixels), store_},
            .input = url.path(),
            .limit = kLimit,
            .mostBytes = previewMessage::mostBytes(thumbnailStore::kNormalPixels)};
        queue_.run(stale_, run,
                   [this, stale = stale_, answer,
                    url = std::move(url)](const DecoderProcess::Outcome& outcome) {
                       const auto picture = finish(url, outcome);
                       MainQueue::async([stale, answer, url, picture] {
                           if (!*stale) answer(url, picture);
                       });
                   });
    }
}

std::shared_ptr<const Picture> LinuxThumbnails::finish(
    const FileURL& url, const DecoderProcess::Outcome& outcome) const {
    std::string_view rest = outcome.output;
    const auto first = previewMessage::decodeNext(rest, thumbnailStore::kNormalPixels);
    if (!first) return nullptr;  // nothing that has thumbnails, or nothing is known of it
    const std::string mtime = factOf(*first, "MTime");
    if (factOf(*first, "Source") != "file" || !isNumber(mtime)) return first->picture;
    if (outcome.end == End::tookTooLong) return nullptr;  // at another time it may not
    const auto made = outcome.end == End::complete
                          ? previewMessage::decode(rest, thumbnailStore::kNormalPixels)
                          : std::nullopt;
    const Picture* const picture = made ? made->picture.get() : nullptr;
    keep(url, mtime, picture);
    return picture ? made->picture : nullptr;
}

void LinuxThumbnails::keep(const FileURL& url, const std::string& mtime,
                           const Picture* picture) const {
    QImage image(1, 1, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    if (picture) image = toImage(*picture);
    const std::string uri = thumbnailStore::uriOf(url.path());
    image.setText(QLatin1String(thumbnailStore::kUriKey), QString::fromStdString(uri));
    image.setText(QLatin1String(thumbnailStore::kMTimeKey), QString::fromStdString(mtime));
    image.setText(QStringLiteral("Software"), QStringLiteral("Trovast"));
    QByteArray bytes;
    QBuffer buffer(&bytes);
    if (!buffer.open(QIODevice::WriteOnly) || !image.save(&buffer, "png")) return;
    const FileURL folder =
        FileURL(store_).appending(picture ? thumbnailStore::kNormal : thumbnailStore::kFail);
    if (!makePrivateFolder(folder)) return;
    (void)replaceFile(folder.appending(thumbnailStore::nameOf(uri)),
                      std::string_view(bytes.constData(), size_t(bytes.size())), 0600);
}
