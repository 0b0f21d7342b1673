#include "widgets/customized_split_view.h"

#include <QPainter>

#include <cstddef>

#include "platform/notification_center.h"
#include "widgets/style.h"

namespace velmara {
CustomizedSplitView::CustomizedSplitView(QWidget* parent, Scheduler& timers, const Clock& clock)
    : SplitView(parent, timers, clock) {}

void CustomizedSplitView::drawDividerInRect(QPainter& painter, const QRectF& rect) {
  for (const DividerFill& fill : dividerFills(rect)) painter.fillRect(fill.rect, fill.color);
  if (!hasFocus()) return;
  const double middle = rect.height() / 2;
  painter.fillRect(QRectF(rect.x() + 2, middle - 9, 2, 18), style::kAccent);
}

CustomSplitViewDelegate::CustomSplitViewDelegate(NotificationCenter& center) : center_(center) {}

void CustomSplitViewDelegate::setMinimumLength(double length, int forViewAtIndex) {
  lengthsByViewIndex[forViewAtIndex] = length;
}

void CustomSplitViewDelegate::setPriority(int priority, int forViewAtIndex) {
  viewIndicesByPriority[priority] = forViewAtIndex;
}

double CustomSplitViewDelegate::minimumLength(int index) const {
  const auto found = lengthsByViewIndex.find(index);
  return found != lengthsByViewIndex.end() ? found->second : 0.0;
}

double CustomSplitViewDelegate::constrainMinCoordinate(const SplitView& splitView,
                                                       double /*proposed*/, int ofSubviewAt) {
  return lowestPosition(splitView.subviewFrames(), static_cast<std::size_t>(ofSubviewAt),
                        minimumLength(ofSubviewAt));
}

double CustomSplitViewDelegate::constrainMaxCoordinate(const SplitView& splitView,
                                                       double /*proposed*/, int ofSubviewAt) {
  return highestPosition(splitView.subviewFrames(), static_cast<std::size_t>(ofSubviewAt),
                         minimumLength(ofSubviewAt + 1));
}

void CustomSplitViewDelegate::resizeSubviewsWithOldSize(SplitView& splitView,
                                                        const QSizeF& oldSize) {
  splitView.setSubviewFrames(resizedByPriority(splitView.subviewFrames(), oldSize, splitView.size(),
                                               splitView.dividerThickness(), viewIndicesByPriority,
                                               lengthsByViewIndex));
}

QRectF CustomSplitViewDelegate::effectiveRect(const SplitView& /*splitView*/,
                                              const QRectF& proposedEffectiveRect,
                                              const QRectF& forDrawnRect,
                                              int /*ofDividerAtIndex*/) {
  center_.post(notifications::kSpliviewPositionMoved);
  return velmara::effectiveRect(proposedEffectiveRect, forDrawnRect);
}

void CustomSplitViewDelegate::splitViewDidResizeSubviews(const SplitView& /*splitView*/) {
  center_.post(notifications::kSpliviewPositionMoved);
}

}  // namespace velmara
