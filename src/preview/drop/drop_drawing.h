#pragma once

#include <QRect>
#include <QString>

class QPainter;

namespace velmara {

/// The line width of paths that set none of their own, in points, for the whole process. The first
/// focus ring sets it to its own width, and it stays that.
double defaultLineWidth();

/// Strokes a ring in the colour of the keyboard focus along the inside of a frame, with a light
/// line along its inner edge so that it stands out from any picture.
void strokeFocusRing(QPainter& painter, const QRect& frame);

/// Draws what an empty window says of itself into the middle of a frame: an outlined, rounded card
/// with the open-folder icon, the text and, below it, the shortcut. The painter's font decides the
/// sizes. Too small a frame is left empty.
void drawInvitation(QPainter& painter, const QRect& frame, const QString& text,
                    const QString& shortcut);

}  // namespace velmara
