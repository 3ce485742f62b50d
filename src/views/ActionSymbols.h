#pragma once
#include "screen/RowAction.h"

class QColor;
class QPainter;
class QRectF;

/// The symbols of what Return does, drawn in lines of one colour. Main thread.
namespace ActionSymbols {

/// Fills the square; nothing for what is pending.
void draw(QPainter& painter, const QRectF& square, RowAction::Symbol symbol, const QColor& colour);

}  // namespace ActionSymbols
