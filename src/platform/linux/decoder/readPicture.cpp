#include "platform/linux/decoder/readPicture.h"

#include <QFile>
#include <QImageReader>
#include <cstring>

#include "platform/linux/decoder/facts.h"

namespace {

constexpr int kMostMegabytes = 256;
constexpr int64_t kMostPixels = 60'000'000;

}  // namespace

std::shared_ptr<const Picture> toPicture(const QImage& image, uint32_t pixels) {
    if (image.isNull()) return nullptr;
    QImage small = image;
    const int side = int(pixels);
    if (small.width() > side || small.height() > side)
        small = small.scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    small = small.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    if (small.isNull()) return nullptr;
    auto picture = std::make_shared<Picture>();
    picture->width = uint32_t(small.width());
    picture->height = uint32_t(small.height());
    picture->pixels.resize(size_t(picture->width) * picture->height);
    for (int y = 0; y < small.height(); ++y)
        std::memcpy(&picture->pixels[size_t(y) * picture->width], small.constScanLine(y),
                    size_t(picture->width) * sizeof(uint32_t));
    return picture;
}

void readPicture(int handle, uint32_t pixels, Preview& preview) {
    QFile file;
    if (!file.open(handle, QIODevice::ReadOnly)) return;
    QImageReader reader(&file);
    QImageReader::setAllocationLimit(kMostMegabytes);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    if (!size.isEmpty()) {
        preview.facts.insert(preview.facts.begin(),
                             {"Dimensions", dimensionsText(size.width(), size.height())});
        if (qint64(size.width()) * size.height() > kMostPixels) {
            preview.message = "The picture is too large to be shown.";
            return;
        }
        // Twice as large as it will be, since the readers' own scaling is coarse.
        const QSize twice(int(pixels) * 2, int(pixels) * 2);
        const bool isDrawing = reader.format().startsWith("svg");
        if (isDrawing)
            reader.setScaledSize(size.scaled(twice / 2, Qt::KeepAspectRatio));
        else if (size.width() > twice.width() || size.height() > twice.height())
            reader.setScaledSize(size.scaled(twice, Qt::KeepAspectRatio));
    }
    preview.picture = toPicture(reader.read(), pixels);
    if (preview.picture)
        preview.kind = Preview::Kind::picture;
    else
        preview.message = "The picture cannot be read: it is damaged, or of an unknown kind.";
}
