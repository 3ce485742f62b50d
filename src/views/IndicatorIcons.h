#pragma once
#include "screen/IndicatorsView.h"

class QColor;
class QPainter;
class QRectF;

/// The small drawings on the buttons of the info bar. Main thread.
namespace IndicatorIcons {

/// What is not on is pale and struck through; a path is on where only its last part counts.
void draw(QPainter& painter, const QRectF& square, IndicatorButton button, bool isOn,
          const QColor& colour);

}  // namespace IndicatorIcons
