#pragma once

#include <QPoint>
#include <QWidget>

#include <map>
#include <memory>
#include <vector>

#include "platform/notification_center.h"
#include "platform/timer.h"
#include "widgets/split_geometry.h"

namespace velmara {

class SplitView;

/// Decides and watches what a split view does. All indices start at 0.
class SplitViewDelegate {
 public:
  virtual ~SplitViewDelegate() = default;

  /// The lowest and the highest position allowed for a divider.
  virtual double constrainMinCoordinate(const SplitView& splitView, double proposed,
                                        int ofSubviewAt) = 0;
  virtual double constrainMaxCoordinate(const SplitView& splitView, double proposed,
                                        int ofSubviewAt) = 0;

  /// Gives the subviews their frames (SplitView::setSubviewFrames) after a change of the size.
  virtual void resizeSubviewsWithOldSize(SplitView& splitView, const QSizeF& oldSize) = 0;

  /// Where a divider can be taken hold of. Asked whenever the split view lays out its rectangles.
  virtual QRectF effectiveRect(const SplitView& splitView, const QRectF& proposedEffectiveRect,
                               const QRectF& forDrawnRect, int ofDividerAtIndex) = 0;

  /// The subviews have new frames.
  virtual void splitViewDidResizeSubviews(const SplitView& splitView) = 0;

  /// An animation of dividers begins or has ended.
  virtual void splitViewIsAnimating(SplitView& /*splitView*/, bool /*isAnimating*/) {}
};

/// A view split by dividers that the user drags, or moves with the arrow keys. The subviews are
/// only rectangles: the view lies over a picture, shows nothing but its dividers and lets the mouse
/// through everywhere else. Positions are in points from the view's left (vertical split) or top
/// edge. Main thread.
class SplitView : public QWidget {
  Q_OBJECT

 public:
  /// No subviews, vertical.
  explicit SplitView(QWidget* parent = nullptr, Scheduler& timers = eventLoopTimers(),
                     const Clock& clock = systemClock());
  ~SplitView() override;

  /// Two subviews, side by side, unless told otherwise. Both calls lay the subviews out evenly.
  void setSubviewCount(int count);
  void setVertical(bool isVertical);

  /// Places the view and lays its subviews out at once, also while it is hidden.
  void setFrame(const QRect& frame);

  /// How many, and how they lie.
  int subviewCount() const { return static_cast<int>(split_.frames.size()); }
  bool isVertical() const { return split_.isVertical; }

  /// The delegate is not owned; null for none. A delegate that dies is taken away first.
  void setDelegate(SplitViewDelegate* delegate);

  /// In index order. Setting them moves the dividers without asking the delegate.
  const SplitFrames& subviewFrames() const { return split_; }
  void setSubviewFrames(const SplitFrames& frames);

  /// A subview of this program is never collapsed.
  bool isSubviewCollapsed(int /*index*/) const { return false; }

  /// In points, and what is drawn of a divider; for subclasses.
  virtual double dividerThickness() const { return 1.0; }
  virtual void drawDividerInRect(QPainter& painter, const QRectF& rect);

  /// Moves a divider within what the delegate allows. Nothing happens for an index of no divider.
  void setPosition(double position, int ofDividerAtIndex);

  /// The far edge of the subview before the divider; 0 for an index of no subview.
  double positionOfDividerAtIndex(int index) const;

  /// Moves one divider, with an animation if that is wished and the index is one of a subview.
  void setPosition(double position, int ofDividerAtIndex, bool animated);

  /// Moves several dividers in one animation of 0.25 seconds, to the positions given. An animation
  /// under way is ended where it stands. Indices and positions go in pairs.
  void setPositions(const std::vector<double>& positions,
                    const std::vector<int>& ofDividersAtIndexes);

  /// Whether dividers are on their way by themselves.
  bool isAnimating() const { return animation_ != nullptr; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  struct Animation;

  int dividerCount() const { return subviewCount() > 0 ? subviewCount() - 1 : 0; }
  int dividerAt(const QPointF& point) const;
  double along(const QPointF& point) const { return isVertical() ? point.x() : point.y(); }
  void layoutIfNeeded();
  void layoutRectangles();
  void subviewsChanged();
  void stepAnimation();
  void endAnimation();

  Scheduler& timers_;
  const Clock& clock_;
  SplitViewDelegate* delegate_ = nullptr;
  SplitFrames split_;
  QSize laidOutSize_;  // Invalid until the first layout.
  std::vector<QRectF> effectiveRects_;
  std::unique_ptr<Animation> animation_;
  int draggedDivider_ = -1;
  double dragOffset_ = 0.0;
};

/// The before/after line: a split view with a line 6 points thick that carries a grip. The grip is
/// yellow while the line has the keyboard's focus.
class CustomizedSplitView : public SplitView {
  Q_OBJECT

 public:
  /// As its base.
  using SplitView::SplitView;

  /// As its base.
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
  /// Announces moves at `center`, which must outlive this.
  explicit CustomSplitViewDelegate(NotificationCenter& center = defaultCenter())
      : center_(center) {}

  /// How short a subview may become, in points.
  void setMinimumLength(double length, int forViewAtIndex) {
    lengthsByViewIndex[forViewAtIndex] = length;
  }

  /// Lower priorities are served first when the size changes.
  void setPriority(int priority, int forViewAtIndex) {
    viewIndicesByPriority[priority] = forViewAtIndex;
  }

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
  NotificationCenter& center_;
  std::map<int, double> lengthsByViewIndex;
  std::map<int, int> viewIndicesByPriority;
};

}  // namespace velmara
