#pragma once

#include <QRect>
#include <QString>

class QPainter;

namespace velmara {

/// Draws what an empty window says of itself into the middle of a frame: an outlined, rounded card
/// with the open-folder icon, the text and, below it, the shortcut. The painter's font decides the
/// sizes. Too small a frame is left empty.
void drawInvitation(QPainter& painter, const QRect& frame, const QString& text,
                    const QString& shortcut);

}  // namespace velmara
