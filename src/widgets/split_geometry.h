#pragma once

#include <QRectF>
#include <QSizeF>

#include <cstddef>
#include <map>
#include <vector>

namespace velmara {

/// Frames of a split view's subviews in index order. A vertical split has its subviews side by
/// side: its axis is x; the other kind has them one below the other, along y.
struct SplitFrames {
  /// In points, and along which axis.
  std::vector<QRectF> frames;
  bool isVertical = true;

  /// Along the axis.
  double origin(std::size_t i) const { return isVertical ? frames[i].x() : frames[i].y(); }
  double extent(std::size_t i) const { return isVertical ? frames[i].width() : frames[i].height(); }
  double farEdge(std::size_t i) const { return origin(i) + extent(i); }
  /// Sets both along the axis and keeps the other two.
  void place(std::size_t i, double origin, double extent);
};

/// The minimum length of a subview; 0 where none is kept.
double minimumLengthOf(const std::map<int, double>& lengthsByViewIndex, int index);

/// The lowest place of divider i: the origin of subview i and its minimum length.
double lowestPosition(const SplitFrames& split, std::size_t i, double minimumLength);

/// The highest place of divider i: the far edge of subview i + 1 less its minimum length.
double highestPosition(const SplitFrames& split, std::size_t i, double minimumLengthOfNext);

/// Gives a change of the bounds to the subviews by priority, lowest first. Subviews the priorities
/// do not name keep their length. A missing minimum length is 0.
/// A subview grows by all of a positive change; of a negative one it takes what its minimum length
/// allows, and passes the rest on. What nobody takes makes the layout overflow.
SplitFrames resizedByPriority(const SplitFrames& split, const QSizeF& oldSize,
                              const QSizeF& newSize, double dividerThickness,
                              const std::map<int, int>& viewIndicesByPriority,
                              const std::map<int, double>& lengthsByViewIndex);

/// Subviews of equal length over the bounds.
SplitFrames equalFrames(std::size_t count, bool isVertical, const QSizeF& bounds,
                        double dividerThickness);

/// The frames after divider i went to a position: the far edge of subview i and the near edge of
/// the next one moved, a thickness apart; the edges beyond them stay. No length becomes negative.
SplitFrames withDividerAt(const SplitFrames& split, std::size_t i, double position,
                          double dividerThickness);

/// Brings the last subview back into the bounds as far as the one before it leaves room. Its length
/// may have been used up by a divider that stands on it.
SplitFrames settledInBounds(const SplitFrames& split, const QSizeF& bounds);

/// The rectangle of divider i, over the whole of the bounds across the axis.
QRectF dividerRect(const SplitFrames& split, std::size_t i, const QSizeF& bounds,
                   double dividerThickness);

/// The rectangle in which a divider is taken hold of: the proposed one's x, and the drawn one's y,
/// width and height.
QRectF effectiveRect(const QRectF& proposed, const QRectF& drawn);

/// Frames between two layouts of the same subviews, t from 0 to 1.
SplitFrames interpolated(const SplitFrames& from, const SplitFrames& to, double t);

/// The ease-in-ease-out curve, the cubic Bezier curve with the control points (0.42, 0) and
/// (0.58, 1): the part of the way at a part t of the time.
double easeInEaseOut(double t);

}  // namespace velmara
