#pragma once

#include <map>

#include "platform/notification_center.h"
#include "widgets/split_view.h"

namespace velmara {

/// The before/after line: a split view with a line 6 points thick that carries a grip. The grip is
/// yellow while the line has the keyboard's focus.
class CustomizedSplitView : public SplitView {
  Q_OBJECT

 public:
  explicit CustomizedSplitView(QWidget* parent = nullptr, Scheduler& timers = eventLoopTimers(),
                               const Clock& clock = systemClock());

  double dividerThickness() const override { return 6.0; }
  void drawDividerInRect(QPainter& painter, const QRectF& rect) override;

  /// The same as the base class draws.
  void drawRect(QPaintEvent* event) { SplitView::paintEvent(event); }

 protected:
  void paintEvent(QPaintEvent* event) override { drawRect(event); }
};

/// Keeps minimum lengths and resize priorities of a split view's subviews, holds its dividers and
/// sizes to them, and announces every move with "notificationSpliviewPositionMoved". That comes
/// with every layout too, so listeners must tolerate repeats.
class CustomSplitViewDelegate final : public SplitViewDelegate {
 public:
  explicit CustomSplitViewDelegate(NotificationCenter& center = defaultCenter());

  void setMinimumLength(double length, int forViewAtIndex);

  /// Lower priorities are served first when the size changes.
  void setPriority(int priority, int forViewAtIndex);

  double constrainMinCoordinate(const SplitView& splitView, double proposed,
                                int ofSubviewAt) override;
  double constrainMaxCoordinate(const SplitView& splitView, double proposed,
                                int ofSubviewAt) override;
  void resizeSubviewsWithOldSize(SplitView& splitView, const QSizeF& oldSize) override;
  QRectF effectiveRect(const SplitView& splitView, const QRectF& proposedEffectiveRect,
                       const QRectF& forDrawnRect, int ofDividerAtIndex) override;
  void splitViewDidResizeSubviews(const SplitView& splitView) override;

  /// For users of the delegate, which does not set it itself.
  bool isSplitViewHandleMoved = false;

 private:
  double minimumLength(int index) const;

  NotificationCenter& center_;
  std::map<int, double> lengthsByViewIndex;
  std::map<int, int> viewIndicesByPriority;
};

}  // namespace velmara
