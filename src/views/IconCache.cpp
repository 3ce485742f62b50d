#include "views/IconCache.h"

#include <QIcon>
#include <QPainter>
#include <algorithm>

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
    const bool isFile = key.name.startsWith(QLatin1Char('/'));
    const QIcon icon = isFile ? QIcon(key.name) : QIcon::fromTheme(key.name);
    return *applications_.insert(key, icon.pixmap(QSize(size, size), scale));
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
