#include "views/IconCache.h"

#include <QIcon>
#include <QPainter>

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

QPixmap IconCache::pixmap(const std::string& iconName, int size, double scale) {
    const Key key{QString::fromStdString(iconName), size, scale};
    auto found = pixmaps_.constFind(key);
    if (found == pixmaps_.constEnd()) found = pixmaps_.insert(key, make(key.name, size, scale));
    return *found;
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
