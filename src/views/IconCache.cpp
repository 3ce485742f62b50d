#include "views/IconCache.h"

#include <QBuffer>
#include <QIcon>
#include <QImageReader>
#include <QPainter>
#include <QPointer>
#include <QTimer>
#include <algorithm>

#include "util/FileIO.h"
#include "util/World.h"
#include "util/queues/OperationQueue.h"
#include "views/DrawnIcons.h"

namespace {

/// "image-svg+xml" is the icon of "image/svg+xml"; its generic name is what every theme has.
QString genericName(const QMimeDatabase& mimeTypes, const QString& iconName) {
    QString type = iconName;
    const qsizetype dash = type.indexOf(QLatin1Char('-'));
    if (dash < 0) return {};
    type[dash] = QLatin1Char('/');
    const QMimeType found = mimeTypes.mimeTypeForName(type);
    return found.isValid() ? found.genericIconName() : QString();
}

/// A path may lead to a computer that does not answer.
struct PictureQueue {
    OperationQueue queue{"pictureQ", 1, Qos::userInitiated};
};

/// Null, if it is none. What is drawn by lines fills the square, what has pixels is never larger
/// than they are.
QImage pictureIn(const std::string& bytes, QSize most) {
    QByteArray content = QByteArray::fromRawData(bytes.data(), qsizetype(bytes.size()));
    QBuffer buffer(&content);
    QImageReader reader(&buffer);
    const QSize size = reader.size();
    const bool hasPixels = !reader.format().startsWith("svg");
    if (size.isEmpty()) return {};
    if (!hasPixels || size.width() > most.width() || size.height() > most.height())
        reader.setScaledSize(size.scaled(most, Qt::KeepAspectRatio).expandedTo({1, 1}));
    return reader.read();
}

}  // namespace

QPixmap fitted(const Picture& picture, QSize place, double scale) {
    const QImage image(reinterpret_cast<const uchar*>(picture.pixels.data()), int(picture.width),
                       int(picture.height), QImage::Format_ARGB32_Premultiplied);
    const QSize most = place * scale;
    QPixmap pixmap =
        QPixmap::fromImage(image.width() > most.width() || image.height() > most.height()
                               ? image.scaled(most, Qt::KeepAspectRatio, Qt::SmoothTransformation)
                               : image.copy());
    pixmap.setDevicePixelRatio(scale);
    return pixmap;
}

QPixmap IconCache::pixmap(const std::string& iconName, int size, double scale) {
    const Key key{QString::fromStdString(iconName), size, scale};
    auto found = pixmaps_.constFind(key);
    if (found == pixmaps_.constEnd()) found = pixmaps_.insert(key, make(key.name, size, scale));
    return *found;
}

QPixmap IconCache::applicationPixmap(const std::string& iconName, int size, double scale) {
    const Key key{QString::fromStdString(iconName), size, scale};
    const auto found = applications_.constFind(key);
    if (found != applications_.constEnd()) return *found;
    applications_.insert(key, QPixmap());
    QTimer::singleShot(0, &life_, [this, key] { loadApplication(key); });
    return {};
}

void IconCache::loadApplication(const Key& key) {
    if (key.name.startsWith(QLatin1Char('/')))
        readApplication(key);
    else
        keepApplication(key,
                        QIcon::fromTheme(key.name).pixmap(QSize(key.size, key.size), key.scale));
}

void IconCache::readApplication(const Key& key) {
    constexpr size_t kMostBytes = 1 << 20;
    if (!World::exists()) return;
    World::current().shared<PictureQueue>().queue.addBlock(
        [this, key, life = QPointer<QObject>(&life_)] {
            const auto file = readFile(FileURL(key.name.toStdString()), kMostBytes);
            if (!file) return;
            const int side = qRound(key.size * key.scale);
            QImage picture = pictureIn(file.value().bytes, {side, side});
            MainQueue::async([this, key, life, picture = std::move(picture)] {
                if (life) keepApplication(key, QPixmap::fromImage(picture));
            });
        });
}

void IconCache::keepApplication(const Key& key, const QPixmap& pixmap) {
    if (pixmap.isNull()) return;
    QPixmap& kept = applications_[key];
    kept = pixmap;
    kept.setDevicePixelRatio(key.scale);
    if (loadedBlock_) loadedBlock_();
}

QPixmap IconCache::pixmap(const std::shared_ptr<const Picture>& picture, int size, double scale) {
    constexpr size_t kMostSmalls = 64;
    const auto found = std::find_if(smalls_.begin(), smalls_.end(), [&](const Small& small) {
        return small.picture == picture && small.size == size && small.scale == scale;
    });
    if (found != smalls_.end()) {
        smalls_.splice(smalls_.begin(), smalls_, found);
        return found->pixmap;
    }
    smalls_.push_front({picture, size, scale, fitted(*picture, {size, size}, scale)});
    if (smalls_.size() > kMostSmalls) smalls_.pop_back();
    return smalls_.front().pixmap;
}

QPixmap IconCache::make(const QString& iconName, int size, double scale) const {
    const QString generic = genericName(mimeTypes_, iconName);
    for (const QString& name : {iconName, generic}) {
        if (name.isEmpty() || !QIcon::hasThemeIcon(name)) continue;
        const QPixmap themed = QIcon::fromTheme(name).pixmap(QSize(size, size), scale);
        if (!themed.isNull()) return themed;
    }
    const int pixels = qRound(size * scale);
    QPixmap drawn(pixels, pixels);
    drawn.setDevicePixelRatio(scale);
    drawn.fill(Qt::transparent);
    QPainter painter(&drawn);
    DrawnIcons::draw(painter, QRectF(0, 0, size, size), iconName, generic);
    return drawn;
}
