#pragma once
#include <QString>

class QPainter;
class QRectF;

/// Icons of our own, for desktops without an icon theme: a folder, and sheets of paper that tell
/// the kind of file by a sign and its colour. Main thread.
namespace DrawnIcons {

/// Fills the square with the icon for a freedesktop icon name, or for the generic name of its media
/// type where that tells more; an unknown one is a plain sheet.
void draw(QPainter& painter, const QRectF& square, const QString& iconName,
          const QString& genericName = {});

}  // namespace DrawnIcons
