#include "widgets/split_geometry.h"

#include <QEasingCurve>

#include <algorithm>

namespace velmara {
namespace {

double along(const SplitFrames& split, const QSizeF& size) {
  return split.isVertical ? size.width() : size.height();
}

double mix(double from, double to, double t) {
  return from + (to - from) * t;
}

}  // namespace

void SplitFrames::place(std::size_t i, double newOrigin, double newExtent) {
  QRectF& frame = frames[i];
  frame = isVertical ? QRectF(newOrigin, frame.y(), newExtent, frame.height())
                     : QRectF(frame.x(), newOrigin, frame.width(), newExtent);
}

double minimumLengthOf(const std::map<int, double>& lengths, int index) {
  const auto found = lengths.find(index);
  return found != lengths.end() ? found->second : 0.0;
}

double lowestPosition(const SplitFrames& split, std::size_t i, double minimumLength) {
  return split.origin(i) + minimumLength;
}

double highestPosition(const SplitFrames& split, std::size_t i, double minimumLengthOfNext) {
  return split.farEdge(i + 1) - minimumLengthOfNext;
}

SplitFrames resizedByPriority(const SplitFrames& split, const QSizeF& oldSize,
                              const QSizeF& newSize, double dividerThickness,
                              const std::map<int, int>& viewIndicesByPriority,
                              const std::map<int, double>& lengthsByViewIndex) {
  SplitFrames result = split;
  double change = along(split, newSize) - along(split, oldSize);
  for (const auto& [priority, index] : viewIndicesByPriority) {
    if (index < 0 || static_cast<std::size_t>(index) >= split.frames.size()) continue;
    const auto i = static_cast<std::size_t>(index);
    const double length = result.extent(i);
    const double room = std::max(0.0, length - minimumLengthOf(lengthsByViewIndex, index));
    const double taken = change > 0.0 ? change : std::max(change, -room);
    result.place(i, result.origin(i), length + taken);
    change -= taken;
  }
  for (std::size_t i = 0; i < result.frames.size(); ++i) {
    QRectF& frame = result.frames[i];
    if (result.isVertical) {
      frame.setHeight(newSize.height());
    } else {
      frame.setWidth(newSize.width());
    }
    if (i > 0) result.place(i, result.farEdge(i - 1) + dividerThickness, result.extent(i));
  }
  return result;
}

SplitFrames equalFrames(std::size_t count, bool isVertical, const QSizeF& bounds,
                        double dividerThickness) {
  SplitFrames split{{}, isVertical};
  if (count == 0) return split;
  split.frames.assign(count, QRectF(QPointF(), bounds));
  const double dividers = dividerThickness * static_cast<double>(count - 1);
  const double extent = std::max(0.0, along(split, bounds) - dividers) / static_cast<double>(count);
  for (std::size_t i = 0; i < count; ++i) {
    split.place(i, static_cast<double>(i) * (extent + dividerThickness), extent);
  }
  return split;
}

SplitFrames withDividerAt(const SplitFrames& split, std::size_t i, double position,
                          double dividerThickness) {
  SplitFrames result = split;
  if (i + 1 >= split.frames.size()) return result;
  const double before = split.origin(i);
  const double after = split.farEdge(i + 1);
  const double at = std::clamp(position, before, std::max(before, after));
  const double next = std::min(at + dividerThickness, std::max(before, after));
  result.place(i, before, at - before);
  result.place(i + 1, next, std::max(0.0, after - next));
  return result;
}

SplitFrames settledInBounds(const SplitFrames& split, const QSizeF& bounds) {
  SplitFrames result = split;
  if (split.frames.empty()) return result;
  const std::size_t last = split.frames.size() - 1;
  const double overflow = result.farEdge(last) - along(split, bounds);
  if (overflow <= 0.0) return result;
  const double nearest = last > 0 ? result.farEdge(last - 1) : 0.0;
  result.place(last, std::max(nearest, result.origin(last) - overflow), result.extent(last));
  return result;
}

QRectF dividerRect(const SplitFrames& split, std::size_t i, const QSizeF& bounds,
                   double dividerThickness) {
  const double at = split.farEdge(i);
  return split.isVertical ? QRectF(at, 0, dividerThickness, bounds.height())
                          : QRectF(0, at, bounds.width(), dividerThickness);
}

QRectF effectiveRect(const QRectF& proposed, const QRectF& drawn) {
  return {proposed.x(), drawn.y(), drawn.width(), drawn.height()};
}

SplitFrames interpolated(const SplitFrames& from, const SplitFrames& to, double t) {
  SplitFrames result = to;
  const std::size_t count = std::min(from.frames.size(), to.frames.size());
  for (std::size_t i = 0; i < count; ++i) {
    const QRectF& a = from.frames[i];
    const QRectF& b = to.frames[i];
    result.frames[i] = {mix(a.x(), b.x(), t), mix(a.y(), b.y(), t), mix(a.width(), b.width(), t),
                        mix(a.height(), b.height(), t)};
  }
  return result;
}

double easeInEaseOut(double t) {
  static const QEasingCurve curve = [] {
    QEasingCurve bezier(QEasingCurve::BezierSpline);
    bezier.addCubicBezierSegment({0.42, 0.0}, {0.58, 1.0}, {1.0, 1.0});
    return bezier;
  }();
  return curve.valueForProgress(t);
}

}  // namespace velmara
