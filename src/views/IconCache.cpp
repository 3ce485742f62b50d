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
    const auto found = pixmaps_.constFind(key);
    if (found != pixmaps_.constEnd()) return *found;
    const QPixmap themed = ofTheme(key);
    return *pixmaps_.insert(key, themed.isNull() ? drawn(key) : themed);
}

QPixmap IconCache::pixmapAtOnce(const std::string& iconName, int size, double scale) {
    const Key key{QString::fromStdString(iconName), size, scale};
    const auto found = pixmaps_.constFind(key);
    if (found != pixmaps_.constEnd()) return *found;
    want(key, Kind::item);
    return *pixmaps_.insert(key, drawn(key));
}

void IconCache::prepare(int size, double scale) {
    constexpr const char* kCommon[] = {
        "folder",        "text-plain",       "application-pdf", "image-png", "image-jpeg",
        "text-x-c++src", "text-x-python",    "text-markdown",   "text-html", "audio-mpeg",
        "video-mp4",     "application-json", "application-zip", "unknown"};
    for (const char* name : kCommon) {
        const Key key{QString::fromLatin1(name), size, scale};
        if (!pixmaps_.contains(key)) want(key, Kind::item);
    }
}

void IconCache::want(const Key& key, Kind kind) {
    const Wanted wanted{key, kind};
    if (std::find(wanted_.begin(), wanted_.end(), wanted) != wanted_.end()) return;
    wanted_.push_back(wanted);
    if (wanted_.size() == 1) QTimer::singleShot(0, &life_, [this] { loadNext(); });
}

/// One a turn of the main loop: a theme's picture can take milliseconds.
void IconCache::loadNext() {
    if (wanted_.empty()) return;  // cleared meanwhile
    const auto [key, kind] = wanted_.front();
    wanted_.pop_front();
    if (!wanted_.empty()) QTimer::singleShot(0, &life_, [this] { loadNext(); });
    if (kind == Kind::application)
        loadApplication(key);
    else if (const QPixmap themed = ofTheme(key); !themed.isNull())
        keep(pixmaps_, key, themed);
    else if (!pixmaps_.contains(key))
        pixmaps_.insert(key, drawn(key));  // not looked for again
}

QPixmap IconCache::applicationPixmap(const std::string& iconName, int size, double scale) {
    const Key key{QString::fromStdString(iconName), size, scale};
    const auto found = applications_.constFind(key);
    if (found != applications_.constEnd()) return *found;
    applications_.insert(key, QPixmap());
    want(key, Kind::application);
    return {};
}

void IconCache::loadApplication(const Key& key) {
    if (key.name.startsWith(QLatin1Char('/')))
        readApplication(key);
    else
        keep(applications_, key,
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
                if (life) keep(applications_, key, QPixmap::fromImage(picture));
            });
        });
}

void IconCache::keep(QHash<Key, QPixmap>& pixmaps, const Key& key, const QPixmap& pixmap) {
    if (pixmap.isNull()) return;
    QPixmap& kept = pixmaps[key];
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

/// Null where it has none.
QPixmap IconCache::ofTheme(const Key& key) const {
    for (const QString& name : {key.name, genericName(mimeTypes_, key.name)}) {
        if (name.isEmpty() || !QIcon::hasThemeIcon(name)) continue;
        const QPixmap themed = QIcon::fromTheme(name).pixmap(QSize(key.size, key.size), key.scale);
        if (!themed.isNull()) return themed;
    }
    return {};
}

QPixmap IconCache::drawn(const Key& key) const {
    const int pixels = qRound(key.size * key.scale);
    QPixmap picture(pixels, pixels);
    picture.setDevicePixelRatio(key.scale);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    DrawnIcons::draw(painter, QRectF(0, 0, key.size, key.size), key.name,
                     genericName(mimeTypes_, key.name));
    return picture;
}
