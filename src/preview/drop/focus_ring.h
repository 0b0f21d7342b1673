#pragma once

#include <QRect>

class QPainter;

namespace velmara {

/// The line width of paths that set none of their own, in points, for the whole process. The first
/// focus ring sets it to its own width, and it stays that.
double defaultLineWidth();

/// Strokes a ring in the colour of the keyboard focus along the inside of a frame, with a light
/// line along its inner edge so that it stands out from any picture.
void strokeFocusRing(QPainter& painter, const QRect& frame);

}  // namespace velmara
