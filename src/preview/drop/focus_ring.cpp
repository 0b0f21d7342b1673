#include "preview/drop/focus_ring.h"

#include <QPainter>
#include <QPen>

#include "widgets/style.h"

namespace velmara {
namespace {

constexpr double kRingWidth = 6.0;
constexpr double kGapWidth = 2.0;

double lineWidth = 1.0;

void strokeInside(QPainter& painter, const QRectF& frame, const QColor& color, double width) {
  QPen pen(color, width);
  pen.setJoinStyle(Qt::MiterJoin);
  painter.setPen(pen);
  const double half = width / 2.0;
  painter.drawRect(frame.adjusted(half, half, -half, -half));
}

}  // namespace

double defaultLineWidth() {
  return lineWidth;
}

void strokeFocusRing(QPainter& painter, const QRect& frame) {
  lineWidth = kRingWidth;
  painter.save();
  painter.setBrush(Qt::NoBrush);
  strokeInside(painter, frame, style::kFocusRing, lineWidth);
  strokeInside(painter, QRectF(frame).adjusted(lineWidth, lineWidth, -lineWidth, -lineWidth),
               style::kFocusGap, kGapWidth);
  painter.restore();
}

}  // namespace velmara
