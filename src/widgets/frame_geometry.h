#pragma once

#include <QRect>
#include <QSize>
#include <Qt>

#include <array>

namespace velmara {

/// One of the eight strips along a frameless window's border that the window is resized by.
struct EdgeStrip {
  Qt::Edges edges;
  QRect rect;
};

/// The strips of a window of that size: four sides of the thickness, between four square corners.
std::array<EdgeStrip, 8> edgeStrips(const QSize& size, int thickness, int corner);

/// The pointer that tells how an edge or a corner moves.
Qt::CursorShape cursorForEdges(Qt::Edges edges);

/// A window's frame after its edges were dragged by a distance: the opposite edges stay, also when
/// a limit of the size is reached.
QRect resizedFrame(const QRect& frame, Qt::Edges edges, const QPoint& distance,
                   const QSize& minimum, const QSize& maximum);

}  // namespace velmara
